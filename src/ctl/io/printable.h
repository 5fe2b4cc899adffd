#pragma once
/// UTF-8 texts as they are printed.
#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace ctl {

/// The text with its control characters as C escapes, so that a hostile text can neither start new lines nor
/// change the state of a terminal.
std::string printable(std::string_view text);

/// The text with each byte that is not kept as "%" and two hexadecimal digits.
std::string percent_encoded(std::string_view text, bool (*is_kept)(char));

/// Two hexadecimal digits in lower case for each octet.
std::string hex_of(std::string_view octets);

/// Whether the byte is a later byte of a UTF-8 character.
bool is_tail(char byte);
/// The number of characters.
std::size_t width_of(std::string_view text);
/// The text as a column of this width, followed by two spaces.
std::string padded(const std::string& text, std::size_t width);

/// Whether XML can contain the UTF-8 texts: it has no way to write most control characters.
bool fit_xml(std::initializer_list<std::string_view> texts);
/// The reason for leaving out an entry whose texts XML cannot contain.
extern const char* const not_for_xml;
/// The UTF-8 text, escaped for XML, between tags and in attributes. `fit_xml` must be true for it.
std::string xml(std::string_view text);

} // namespace ctl
