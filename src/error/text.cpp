#include "error/text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>

namespace {

template <typename Number> std::string formatted(const char* format, Number value) {
    char buffer[128];
    std::snprintf(buffer, sizeof buffer, format, value);
    return buffer;
}

/// The letter that follows the backslash, or 0 when the byte has no letter of its own.
char escape_letter(char byte) {
    switch (byte) {
    case '\a': return 'a';
    case '\b': return 'b';
    case '\t': return 't';
    case '\n': return 'n';
    case '\v': return 'v';
    case '\f': return 'f';
    case '\r': return 'r';
    case '"':
    case '\'':
    case '\\': return byte;
    default: return 0;
    }
}

void append_escaped(std::string& quoted, char byte) {
    if (const char letter = escape_letter(byte); letter != 0) {
        quoted += {'\\', letter};
    } else if (const unsigned code = static_cast<unsigned char>(byte); code < ' ') {
        quoted += formatted("\\%03o", code);
    } else {
        quoted += byte;
    }
}

constexpr std::array<std::uint32_t, 256> crc_table() {
    constexpr std::uint32_t polynomial = 0xEDB88320;
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
        std::uint32_t remainder = byte;
        for (int bit = 0; bit < 8; ++bit)
            remainder = (remainder >> 1) ^ ((remainder & 1) != 0 ? polynomial : 0);
        table[byte] = remainder;
    }
    return table;
}

} // namespace

std::string number_text(std::uint32_t value, bool two_digits) {
    return formatted(two_digits ? "%02u" : "%u", static_cast<unsigned>(value));
}

std::string signed_number_text(std::int32_t value, bool two_digits) {
    return formatted(two_digits ? "%02i" : "%i", static_cast<int>(value));
}

std::string port_text(std::uint16_t port) {
    return signed_number_text(static_cast<std::int16_t>(port), false);
}

std::string to_lower(const std::string& text) {
    std::string lower = text;
    for (char& byte : lower)
        byte = static_cast<char>(std::tolower(static_cast<unsigned char>(byte)));
    return lower;
}

std::string quote_string(const std::string& text) {
    std::string quoted = "\"";
    for (const char byte : text)
        append_escaped(quoted, byte);
    return quoted + '"';
}

void split_string(std::vector<std::string>& list, const std::string& text, char separator, bool keep_empty) {
    list.clear();
    std::size_t start = 0;
    while (true) {
        const std::size_t end = std::min(text.find(separator, start), text.size());
        if (end > start || keep_empty)
            list.push_back(text.substr(start, end - start));
        if (end == text.size())
            return;
        start = end + 1;
    }
}

std::uint32_t crc32(const void* bytes, std::size_t length) {
    static constexpr std::array<std::uint32_t, 256> table = crc_table();
    const auto* const begin = static_cast<const unsigned char*>(bytes);
    std::uint32_t sum = 0xFFFFFFFF;
    for (std::size_t i = 0; i < length; ++i)
        sum = table[(sum ^ begin[i]) & 0xFF] ^ (sum >> 8);
    return ~sum;
}
