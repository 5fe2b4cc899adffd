#pragma once
#include "substitute/types.h"

#include <string>

namespace substitute {

/// Sets the text of FormatMessageA for `code` from now on, including its line end.
void set_system_text(DWORD code, const std::string& text);

} // namespace substitute
