#pragma once
#include "ctl/check/findings.h"

#include <string_view>
#include <vector>

namespace ctl {

/// Reads a spec file as the window does, and also reports mistakes that the window does not report, such as a
/// second entry with the same title, or an "&" that is not shown. Findings are in the order of the lines.
/// `code_page` is that of the octets.
std::vector<Finding> check_spec(std::string_view octets, unsigned code_page);

} // namespace ctl
