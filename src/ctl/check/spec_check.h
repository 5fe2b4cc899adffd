#pragma once
/// What is wrong with a spec file, found by reading it as the window does and looking further where the
/// window does not: it says nothing of a title that its lookups will miss or of a letter that becomes an
/// underline.
#include "ctl/check/findings.h"

#include <string_view>
#include <vector>

namespace ctl {

/// All findings in the octets of a spec file, in the order of its lines. `is_utf8`: the file is read in that
/// code page, so its characters of several octets are no surprise.
std::vector<Finding> check_spec(std::string_view octets, bool is_utf8);

} // namespace ctl
