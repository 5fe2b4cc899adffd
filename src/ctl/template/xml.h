#pragma once
#include <initializer_list>
#include <string>
#include <string_view>

namespace ctl {

/// Why an entry that does not fit is left out.
extern const char* const not_for_xml;

/// Whether XML has a way to write all characters of the UTF-8 texts: control characters have none.
bool fit_xml(std::initializer_list<std::string_view> texts);

/// The UTF-8 text, which fits, as it stands in XML, between tags as well as in an attribute.
std::string xml(std::string_view text);

} // namespace ctl
