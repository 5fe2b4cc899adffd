#pragma once
#include <string>
#include <string_view>

namespace ctl {

/// The UTF-8 text as it stands in XML, between tags as well as in an attribute. Throws Failure when XML has
/// no way to write it: a control character.
std::string xml(std::string_view text);

} // namespace ctl
