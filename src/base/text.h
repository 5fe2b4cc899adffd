#pragma once
/// Text utilities: numbers to text and back, quoting, splitting, check sums. Numbers have 32 bits on every
/// platform, whatever the width of its `long`.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Decimal; with `two_digits` at least two characters, filled up with a leading zero.
std::string number_text(std::uint32_t value, bool two_digits);
/// Likewise; a minus sign counts as one of the two characters.
std::string signed_number_text(std::int32_t value, bool two_digits);
/// How a port is shown: deliberately as a signed 16-bit number (65535 as -1), everywhere in the program.
std::string port_text(std::uint16_t port);

/// strtol in base 10 over the whole text, bounded by the 32-bit limits. Empty text is 0. Throws
/// error::EParseError when anything is left over.
std::int32_t parse_int(const std::string& text);

/// The "%i" conversion of scanf: white space and a sign, then hexadecimal after "0x", octal after "0", else
/// decimal, up to the first character that does not fit; bounded by the 32-bit limits ("0x" alone is 0).
/// Nothing when there is no digit to begin with.
std::optional<std::int32_t> scan_int(const std::string& text);

/// Each byte through the C library's tolower.
std::string to_lower(const std::string& text);

/// The text in double quotes; control characters, quotes and backslashes escaped as in C, all other bytes as
/// they are.
std::string quote_string(const std::string& text);

/// Replaces `list` by the pieces of `text` between separators, in order; empty pieces only with `keep_empty`.
void split_string(std::vector<std::string>& list, const std::string& text, char separator, bool keep_empty);

/// CRC-32 of ISO 3309 / IEEE 802.3: reflected, initial value all ones, complemented.
std::uint32_t crc32(const void* bytes, std::size_t length);
