#include "ctl/template/xml.h"

#include <algorithm>

namespace ctl {
namespace {

void append(std::string& escaped, char byte) {
    switch (byte) {
    case '&': escaped += "&amp;"; break;
    case '<': escaped += "&lt;"; break;
    case '>': escaped += "&gt;"; break;
    case '"': escaped += "&quot;"; break;
    // An attribute would read back with blanks in their place.
    case '\t': escaped += "&#9;"; break;
    case '\n': escaped += "&#10;"; break;
    case '\r': escaped += "&#13;"; break;
    default: escaped += byte;
    }
}

bool fits_xml(std::string_view text) {
    const bool has_control = std::any_of(text.begin(), text.end(), [](char byte) {
        return static_cast<unsigned char>(byte) < ' ' && byte != '\t' && byte != '\n' && byte != '\r';
    });
    // U+FFFE and U+FFFF are no characters of XML either.
    return !has_control && text.find("\xEF\xBF\xBE") == std::string_view::npos &&
           text.find("\xEF\xBF\xBF") == std::string_view::npos;
}

} // namespace

const char* const not_for_xml = "one of its texts has a control character, which XML cannot contain";

bool fit_xml(std::initializer_list<std::string_view> texts) {
    return std::all_of(texts.begin(), texts.end(), fits_xml);
}

std::string xml(std::string_view text) {
    std::string escaped;
    for (const char byte : text)
        append(escaped, byte);
    return escaped;
}

} // namespace ctl
