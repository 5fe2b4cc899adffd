#include "ctl/io/visible.h"

#include "base/text.h"

#include <cstdio>

namespace ctl {
namespace {

bool is_continuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

/// How many octets of the control character begin at `at`; 0 when there is none. Those from U+0080 on, of
/// which terminals understand some, are two octets in UTF-8.
std::size_t control_size(std::string_view text, std::size_t at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte < ' ' || byte == 0x7F)
        return 1;
    const bool is_high = byte == 0xC2 && at + 1 < text.size() && is_continuation(text[at + 1]) &&
                         static_cast<unsigned char>(text[at + 1]) < 0xA0;
    return is_high ? 2 : 0;
}

void append_escaped(std::string& shown, char byte) {
    if (static_cast<unsigned char>(byte) < ' ') {
        const std::string quoted = quote_string(std::string(1, byte));
        shown.append(quoted, 1, quoted.size() - 2);
    } else {
        char octal[8];
        std::snprintf(octal, sizeof octal, "\\%03o", static_cast<unsigned>(static_cast<unsigned char>(byte)));
        shown += octal;
    }
}

} // namespace

std::string visible(std::string_view text) {
    std::string shown;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t size = control_size(text, i);
        if (size == 0)
            shown += text[i++];
        for (; size != 0; --size)
            append_escaped(shown, text[i++]);
    }
    return shown;
}

} // namespace ctl
