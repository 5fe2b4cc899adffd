#pragma once
/// Text utilities: numbers to text and back, quoting, splitting, comparing, checksums. Numbers have 32 bits
/// on every platform, whatever the width of its `long`.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The longest text that a value keeps, in bytes: the registry's buffer has 1,024 with the terminating zero.
/// A page cuts the text that it takes from a control to this length.
inline constexpr std::size_t longest_value = 1023;

/// The number as printf prints it with `format`, at most 127 characters.
std::string formatted(const char* format, unsigned number);
/// Decimal; with `two_digits` at least two characters, with a leading zero if necessary.
std::string number_text(std::uint32_t value, bool two_digits);
/// The same; a minus sign counts as one of the two characters.
std::string signed_number_text(std::int32_t value, bool two_digits);
/// How a port is shown: deliberately as a signed 16-bit number (65535 as -1), everywhere in the program.
std::string port_text(std::uint16_t port);

/// strtol in base 10 over the whole text, bounded by the 32-bit limits. Empty text is 0. Throws
/// error::EParseError if any characters remain.
std::int32_t parse_int(const std::string& text);

/// The "%i" conversion of scanf: white space and a sign, then hexadecimal after "0x", octal after "0", else
/// decimal, up to the first character that does not belong to the number; limited to 32 bits ("0x" alone is
/// 0). Empty if the text does not start with a number.
std::optional<std::int32_t> scan_int(const std::string& text);

/// Applies the C library's tolower to each byte.
std::string to_lower(const std::string& text);

/// The text in double quotes, with control characters, quotes and backslashes escaped as in C and all other
/// bytes unchanged.
std::string quote_string(const std::string& text);

/// Replaces `list` with the pieces of `text` between separators, in order; without `keep_empty`, drops empty
/// pieces.
void split_string(std::vector<std::string>& list, const std::string& text, char separator, bool keep_empty);

/// One item of a server list: `host` or `host:port`. Spaces belong to the host.
struct ServerItem {
    std::string host;
    std::optional<std::string> port_text; // what follows the first colon; absent without a colon
};

/// Splits an item at its first colon.
ServerItem split_server_item(const std::string& item);

/// Whether both are the same but for the case of ASCII letters, as names in the registry are.
bool same_ignoring_case(std::string_view one, std::string_view other);

/// CRC-32 of ISO 3309 / IEEE 802.3: reflected, initial value all ones, complemented.
std::uint32_t crc32(const void* bytes, std::size_t length);
