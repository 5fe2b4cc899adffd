#include "ctl/change/backup.h"

#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/files.h"
#include "ctl/io/reg_file.h"
#include "ctl/io/system.h"
#include "ctl/machine/data_folder.h"
#include "ctl/machine/exact_value.h"

#include <ctime>

namespace ctl {
namespace {

void add_value(RegFile& file, const MachineKey& key, const std::string& name) {
    const auto value = read_exactly(key, name);
    if (!value) {
        file.absent(to_utf8(name));
    } else if (value->type == REG_SZ) {
        file.utf16_text(to_utf8(name), value->octets);
    } else {
        file.raw(to_utf8(name), value->type, value->octets);
    }
}

void add_configuration(RegFile& file, const ConfigurationChanges& changes) {
    const MachineKey key(changes.configuration->key(), KEY_QUERY_VALUE);
    file.key(to_utf8(changes.configuration->key()));
    for (const Change& each : changes.changes) {
        if (each.differs)
            add_value(file, key, each.value_name());
    }
}

std::string time_of_day() {
    const std::time_t now = std::time(nullptr);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", std::localtime(&now));
    return text;
}

/// Of several in one second each gets a name of its own.
std::string write_new(const std::string& folder, const std::string& octets) {
    const std::string name = "tavrinctl-" + time_of_day();
    for (int number = 1; number < 1000; ++number) {
        std::string path =
            join_path(folder, name + (number == 1 ? "" : "-" + std::to_string(number)) + ".reg");
        if (write_file(path, octets, true))
            return path;
    }
    throw Failure{failed, "no backup can be written in " + folder + "; nothing was changed"};
}

} // namespace

std::string write_backup(const std::vector<ConfigurationChanges>& all, const std::string& folder) {
    RegFile file;
    for (const ConfigurationChanges& each : all) {
        if (each.differ())
            add_configuration(file, each);
    }
    const std::string place = folder.empty() ? backup_folder() : folder;
    if (!make_folders(place))
        throw Failure{failed, "the folder " + place + " for the backup cannot be made; nothing was changed"};
    return write_new(place, file.octets());
}

} // namespace ctl
