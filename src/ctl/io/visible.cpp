#include "ctl/io/visible.h"

#include "base/text.h"

namespace ctl {

std::string visible(std::string_view text) {
    std::string shown;
    for (const char byte : text) {
        if (static_cast<unsigned char>(byte) >= ' ') {
            shown += byte;
        } else {
            const std::string quoted = quote_string(std::string(1, byte));
            shown.append(quoted, 1, quoted.size() - 2);
        }
    }
    return shown;
}

} // namespace ctl
