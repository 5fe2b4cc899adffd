#pragma once
#include <string>

namespace ctl {

/// UTF-8 to Windows' own texts and back. Octets that are no UTF-8 become replacement characters.
std::wstring to_wide(const std::string& text);
std::string from_wide(const std::wstring& text);

} // namespace ctl
