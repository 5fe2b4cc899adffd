#pragma once
/// The machine's texts (spec files, the registry's values as the agent reads them) are in its code page; what
/// tavrinctl reads from and writes to its callers is UTF-8. A code page is named by Windows' number for it.
#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace ctl {

/// The code page that this machine's texts are in; on a machine without Windows the one of Western Europe.
unsigned machine_code_page();
bool is_code_page(unsigned code_page);

/// A text of these characters alone is the same in UTF-8 and in every code page that a machine can have.
inline bool is_ascii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

/// Octets without a meaning in the code page become replacement characters.
std::string to_utf8(std::string_view text, unsigned code_page = machine_code_page());
/// Nothing when the text does not fit: it has characters that the code page lacks, or is no UTF-8.
std::optional<std::string> from_utf8(std::string_view text, unsigned code_page = machine_code_page());
/// The UTF-8 text with all its letters in one case, as the registry compares names.
std::string in_one_case(std::string_view text);
/// The octets of the UTF-8 text in UTF-16, lower octets first.
std::string to_utf16(std::string_view text);
/// And back; what is no UTF-16 is not kept.
std::string from_utf16(std::string_view octets);

} // namespace ctl
