#include "ctl/change/journal.h"

#include "base/text.h"

#include "ctl/io/encoding.h"
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

} // namespace ctl
