#pragma once
/// What is wrong with a spec file, found by reading it as the window does and looking further where the
/// window does not: it says nothing of a title that its lookups will miss or of a letter that becomes an
/// underline.
#include "ctl/check/findings.h"

#include <string_view>
#include <vector>

namespace ctl {

/// All findings in the octets of a spec file, in the order of its lines. They are read in the
/// code page.
std::vector<Finding> check_spec(std::string_view octets, unsigned code_page);

} // namespace ctl
