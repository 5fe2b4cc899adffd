#include "ctl/change/backup.h"

#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/system.h"
#include "ctl/machine/data_folder.h"

#include <algorithm>
#include <ctime>
#include <utility>

namespace ctl {
namespace {

void add_configuration(RegFile& file, const ConfigurationPlan& plan) {
    const LocalKey key(plan.configuration->key(), KEY_QUERY_VALUE);
    file.key(to_utf8(plan.configuration->key()));
    for (const Change& each : plan.changes) {
        if (!each.is_needed)
            continue;
        const std::string name = to_utf8(each.value_name());
        if (const auto value = read_exactly(key, each.value_name())) {
            file.value(name, *value);
        } else {
            file.absent(name);
        }
    }
}

std::string time_of_day() {
    const std::time_t now = std::time(nullptr);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", std::localtime(&now));
    return text;
}

constexpr std::string_view beginning = "tavrinctl-";
constexpr std::string_view ending = ".reg";
constexpr std::size_t length_of_time = 15;

/// A key for sorting by time, and then by the number of backups of the same second:
/// "tavrinctl-20261122-120000-2.reg" comes before "tavrinctl-20261122-120000-10.reg".
std::pair<std::string, std::string> in_order(const std::string& name) {
    const std::size_t end = beginning.size() + length_of_time;
    const std::string number =
        name.size() > end + ending.size() ? name.substr(end, name.size() - end - ending.size()) : "";
    return {name.substr(0, end), std::string(4 - std::min<std::size_t>(number.size(), 4), ' ') + number};
}

/// The paths of the backups in the folder, the oldest first.
std::vector<std::string> backups_in(const std::string& folder) {
    std::vector<std::string> backups;
    for (const std::string& each : names_in(folder)) {
        if (each.starts_with(beginning) && each.ends_with(ending))
            backups.push_back(each);
    }
    std::sort(backups.begin(), backups.end(), [](const std::string& one, const std::string& other) {
        return in_order(one) < in_order(other);
    });
    for (std::string& each : backups)
        each = join_path(folder, each);
    return backups;
}

void remove_oldest(const std::string& folder, std::size_t most) {
    const std::vector<std::string> backups = backups_in(folder);
    for (std::size_t i = 0; i + most < backups.size(); ++i)
        remove_file(backups[i]);
}

/// Gives backups of the same second different names.
std::string write_new(const std::string& folder, const std::string& octets) {
    const std::string name = std::string(beginning) + time_of_day();
    for (int number = 1; number < 1000; ++number) {
        std::string path =
            join_path(folder, name + (number == 1 ? "" : "-" + std::to_string(number)) + std::string(ending));
        if (write_file(path, octets, true))
            return path;
    }
    throw Failure{ExitCode::failed, "cannot write a backup to " + folder + "; nothing was changed"};
}

} // namespace

std::string write_backup(const Plan& plan, const std::string& folder, std::size_t most) {
    RegFile file;
    for (const ConfigurationPlan& each : plan) {
        if (each.needs_writing())
            add_configuration(file, each);
    }
    const std::string place = folder.empty() ? backup_folder() : folder;
    if (!make_folders(place))
        throw Failure{ExitCode::failed, "cannot create the backup folder " + place + "; nothing was changed"};
    std::string path = write_new(place, file.octets());
    if (folder.empty())
        remove_oldest(place, most);
    return path;
}

std::string newest_backup() {
    const std::vector<std::string> backups = backups_in(backup_folder());
    if (backups.empty())
        throw Failure{ExitCode::failed, "there is no backup in " + backup_folder()};
    return backups.back();
}

std::vector<SavedValue> read_backup(const std::string& path) {
    const auto octets = read_file(path);
    if (!octets)
        throw Failure{ExitCode::failed, path + ": " + why_unreadable()};
    try {
        return read_reg_file(*octets);
    } catch (const Failure& failure) {
        throw Failure{failure.code, path + ": " + failure.text};
    }
}

} // namespace ctl
