#pragma once
#include "ctl/check/findings.h"

#include <string_view>
#include <vector>

namespace ctl {

/// Reads a spec file as the window does, and also reports what the window does not, such as a title that its
/// lookups miss or a letter that becomes an underline. Findings are in the order of the lines. The octets are
/// read in the code page.
std::vector<Finding> check_spec(std::string_view octets, unsigned code_page);

} // namespace ctl
