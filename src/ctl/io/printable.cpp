#include "ctl/io/printable.h"

#include "base/text.h"

#include <algorithm>

namespace ctl {
namespace {

unsigned code_of(char byte) { return static_cast<unsigned char>(byte); }

/// The number of octets of the control character at `at`; 0 if there is none. Those from U+0080 on, some of
/// which terminals obey, have two octets in UTF-8.
std::size_t control_size(std::string_view text, std::size_t at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte < ' ' || byte == 0x7F)
        return 1;
    const bool is_high = byte == 0xC2 && at + 1 < text.size() && is_tail(text[at + 1]) &&
                         static_cast<unsigned char>(text[at + 1]) < 0xA0;
    return is_high ? 2 : 0;
}

std::string escaped(char byte) {
    if (static_cast<unsigned char>(byte) >= ' ')
        return formatted("\\%03o", code_of(byte));
    const std::string quoted = quote_string(std::string(1, byte));
    return quoted.substr(1, quoted.size() - 2);
}

void append_xml(std::string& escaped, char byte) {
    switch (byte) {
    case '&': escaped += "&amp;"; break;
    case '<': escaped += "&lt;"; break;
    case '>': escaped += "&gt;"; break;
    case '"': escaped += "&quot;"; break;
    // Readers of XML replace these with spaces in an attribute.
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
    // XML excludes U+FFFE and U+FFFF as well.
    return !has_control && text.find("\xEF\xBF\xBE") == std::string_view::npos &&
           text.find("\xEF\xBF\xBF") == std::string_view::npos;
}

} // namespace

std::string printable(std::string_view text) {
    std::string shown;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t size = control_size(text, i);
        if (size == 0)
            shown += text[i++];
        for (; size != 0; --size)
            shown += escaped(text[i++]);
    }
    return shown;
}

std::string percent_encoded(std::string_view text, bool (*is_kept)(char)) {
    std::string encoded;
    for (const char each : text)
        encoded += is_kept(each) ? std::string(1, each) : formatted("%%%02X", code_of(each));
    return encoded;
}

std::string hex_of(std::string_view octets) {
    std::string digits;
    digits.reserve(2 * octets.size());
    for (const char each : octets)
        digits += formatted("%02x", code_of(each));
    return digits;
}

bool is_tail(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

std::size_t width_of(std::string_view text) {
    return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), is_tail));
}

std::string padded(const std::string& text, std::size_t width) {
    return text + std::string(width - std::min(width_of(text), width) + 2, ' ');
}

const char* const not_for_xml = "one of its texts has a control character, which XML cannot contain";

bool fit_xml(std::initializer_list<std::string_view> texts) {
    return std::all_of(texts.begin(), texts.end(), fits_xml);
}

std::string xml(std::string_view text) {
    std::string escaped;
    for (const char byte : text)
        append_xml(escaped, byte);
    return escaped;
}

} // namespace ctl
