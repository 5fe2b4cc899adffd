#pragma once
/// Conversions between the machine's code page, in which spec files and the registry's values are, and UTF-8,
/// which tavrinctl reads and prints. Code pages have Windows' numbers.
#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace ctl {

/// This machine's code page; 1252, Western Europe, on a machine without Windows.
unsigned machine_code_page();
bool is_code_page(unsigned code_page);

/// Whether the text is the same in UTF-8 and in every code page that a machine can have.
inline bool is_ascii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

/// Octets without a meaning in the code page become replacement characters.
std::string to_utf8(std::string_view text, unsigned code_page = machine_code_page());
/// Nothing if the text is not UTF-8 or has characters that the code page lacks.
std::optional<std::string> from_utf8(std::string_view text, unsigned code_page = machine_code_page());
/// The UTF-8 text with all its letters in one case, as the registry compares names.
std::string in_one_case(std::string_view text);
/// The octets of the UTF-8 text in UTF-16, lower octets first.
std::string to_utf16(std::string_view text);
/// The reverse; octets that are not UTF-16 are lost.
std::string from_utf16(std::string_view octets);

} // namespace ctl
