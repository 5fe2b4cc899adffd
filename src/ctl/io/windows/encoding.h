#pragma once
#include <string>

namespace ctl {

/// Converts UTF-8 to UTF-16, and back. Octets that are not UTF-8 become replacement characters.
std::wstring to_wide(const std::string& text);
std::string from_wide(const std::wstring& text);

} // namespace ctl
