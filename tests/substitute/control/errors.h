#pragma once
#include "substitute/types.h"

#include <string>

namespace substitute {

/// What FormatMessageA says to `code` from now on, line end included.
void set_system_text(DWORD code, const std::string& text);

} // namespace substitute
