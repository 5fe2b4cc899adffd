#pragma once
#include <string>

namespace ctl {

/// UTF-8 to the system's own texts and back. What is no UTF-8 becomes replacement characters.
std::wstring to_wide(const std::string& text);
std::string from_wide(const std::wstring& text);

} // namespace ctl
