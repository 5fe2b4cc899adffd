#include "ctl/change/journal.h"

#include "base/text.h"

#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/files.h"
#include "ctl/io/system.h"
#include "ctl/machine/data_folder.h"

namespace ctl {
namespace {

bool may_be_in_a_file_name(char character) {
    return static_cast<unsigned char>(character) >= ' ' &&
           std::string_view("<>:\"/\\|?*%").find(character) == std::string_view::npos;
}

/// The manager knows a service by its name in any letter case.
std::string file_for(const std::string& service) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string name = "restart-";
    for (const char character : to_utf8(to_lower(service))) {
        if (may_be_in_a_file_name(character)) {
            name += character;
        } else {
            const auto octet = static_cast<unsigned char>(character);
            name += {'%', digits[octet / 16], digits[octet % 16]};
        }
    }
    return join_path(data_folder(), name);
}

} // namespace

bool restart_is_pending(const std::string& service) {
    return !service.empty() && file_exists(file_for(service));
}

void note_restart(const std::string& service) {
    const std::string path = file_for(service);
    if (!write_file(path, to_utf8(service) + "\n"))
        throw Failure{failed, "cannot write " + path};
}

void forget_restart(const std::string& service) { remove_file(file_for(service)); }

} // namespace ctl
