#pragma once
#include "ctl/change/plan.h"

#include <string>

namespace ctl {

/// Keeps the values that will change, as they are now, in a new .reg file in `folder` (the machine's own when
/// empty). Returns the file's path. Throws Failure when that does not succeed: nothing may be written then.
std::string write_backup(const std::vector<ConfigurationChanges>& all, const std::string& folder);

} // namespace ctl
