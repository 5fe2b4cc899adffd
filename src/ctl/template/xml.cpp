#include "ctl/template/xml.h"

#include "ctl/failure.h"
#include "ctl/io/visible.h"

namespace ctl {
namespace {

void append(std::string& escaped, char byte, std::string_view text) {
    switch (byte) {
    case '&': escaped += "&amp;"; break;
    case '<': escaped += "&lt;"; break;
    case '>': escaped += "&gt;"; break;
    case '"': escaped += "&quot;"; break;
    // An attribute would read back with blanks in their place.
    case '\t': escaped += "&#9;"; break;
    case '\n': escaped += "&#10;"; break;
    case '\r': escaped += "&#13;"; break;
    default:
        if (static_cast<unsigned char>(byte) < ' ')
            throw Failure{invalid, "XML cannot contain the control character in \"" + visible(text) + "\""};
        escaped += byte;
    }
}

} // namespace

std::string xml(std::string_view text) {
    std::string escaped;
    for (const char byte : text)
        append(escaped, byte, text);
    return escaped;
}

} // namespace ctl
