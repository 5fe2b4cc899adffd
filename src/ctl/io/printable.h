#pragma once
/// UTF-8 texts as they are printed.
#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace ctl {

/// The text with its control characters as C escapes, so that a hostile text changes neither lines nor the
/// state of a terminal.
std::string printable(std::string_view text);

/// The text with "%" and two digits for each byte that is not kept.
std::string percent_encoded(std::string_view text, bool (*is_kept)(char));

/// Two hexadecimal digits in lower case for each octet.
std::string hex_of(std::string_view octets);

/// Whether the byte continues a character of UTF-8.
bool is_tail(char byte);
/// The number of characters.
std::size_t width_of(std::string_view text);
/// The text as a column of this width, with two blanks behind it.
std::string padded(const std::string& text, std::size_t width);

/// Whether XML can contain the UTF-8 texts. It has no way to write control characters.
bool fit_xml(std::initializer_list<std::string_view> texts);
/// Why an entry that does not fit is left out.
extern const char* const not_for_xml;
/// The UTF-8 text, which fits, as XML has it between tags and in attributes.
std::string xml(std::string_view text);

} // namespace ctl
