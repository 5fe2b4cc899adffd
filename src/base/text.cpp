#include "base/text.h"

#include "base/exceptions.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

/// A `long` has 32 bits on Windows and 64 elsewhere.
std::int32_t clamped(long value) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

template <typename Number> std::string printed(const char* format, Number value) {
    char buffer[128];
    std::snprintf(buffer, sizeof buffer, format, value);
    return buffer;
}

/// The letter that follows the backslash, or 0 if there is none for this character.
char escape_letter(char character) {
    switch (character) {
    case '\a': return 'a';
    case '\b': return 'b';
    case '\t': return 't';
    case '\n': return 'n';
    case '\v': return 'v';
    case '\f': return 'f';
    case '\r': return 'r';
    case '"':
    case '\'':
    case '\\': return character;
    default: return 0;
    }
}

void append_escaped(std::string& quoted, char character) {
    if (const char letter = escape_letter(character); letter != 0) {
        quoted += {'\\', letter};
    } else if (const unsigned code = static_cast<unsigned char>(character); code < ' ') {
        quoted += formatted("\\%03o", code);
    } else {
        quoted += character;
    }
}

char folded(char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte | 0x20) : byte; }

constexpr std::array<std::uint32_t, 256> crc_table() {
    constexpr std::uint32_t polynomial = 0xEDB88320;
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t octet = 0; octet < table.size(); ++octet) {
        std::uint32_t remainder = octet;
        for (int bit = 0; bit < 8; ++bit)
            remainder = (remainder >> 1) ^ ((remainder & 1) != 0 ? polynomial : 0);
        table[octet] = remainder;
    }
    return table;
}

} // namespace

std::string formatted(const char* format, unsigned number) { return printed(format, number); }

std::string number_text(std::uint32_t value, bool two_digits) {
    return printed(two_digits ? "%02u" : "%u", static_cast<unsigned>(value));
}

std::string signed_number_text(std::int32_t value, bool two_digits) {
    return printed(two_digits ? "%02i" : "%i", static_cast<int>(value));
}

std::string port_text(std::uint16_t port) {
    return signed_number_text(static_cast<std::int16_t>(port), false);
}

std::int32_t parse_int(const std::string& text) {
    char* end = nullptr;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (end != text.c_str() + text.size())
        throw error::EParseError("Error parsing: " + quote_string(text));
    return clamped(value);
}

std::optional<std::int32_t> scan_int(const std::string& text) {
    const char* first = text.c_str() + std::strspn(text.c_str(), " \t\n\v\f\r");
    if (*first == '-' || *first == '+')
        ++first;
    // For "0x", some runtimes report that strtol converted the 0 and some that it converted nothing; all
    // return 0.
    if (*first < '0' || *first > '9')
        return std::nullopt;
    return clamped(std::strtol(text.c_str(), nullptr, 0));
}

std::string to_lower(const std::string& text) {
    std::string lower = text;
    for (char& character : lower)
        character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    return lower;
}

std::string quote_string(const std::string& text) {
    std::string quoted = "\"";
    for (const char character : text)
        append_escaped(quoted, character);
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

ServerItem split_server_item(const std::string& item) {
    const std::size_t colon = item.find(':');
    if (colon == std::string::npos)
        return {item, std::nullopt};
    return {item.substr(0, colon), item.substr(colon + 1)};
}

bool same_ignoring_case(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char left, char right) { return folded(left) == folded(right); });
}

std::uint32_t crc32(const void* bytes, std::size_t length) {
    static constexpr std::array<std::uint32_t, 256> table = crc_table();
    const auto* const begin = static_cast<const unsigned char*>(bytes);
    std::uint32_t sum = 0xFFFFFFFF;
    for (std::size_t i = 0; i < length; ++i)
        sum = table[(sum ^ begin[i]) & 0xFF] ^ (sum >> 8);
    return ~sum;
}
