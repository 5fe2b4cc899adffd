#pragma once
#include "ctl/change/plan.h"

#include <string>
#include <vector>

namespace ctl {

/// Keeps the values that will change, as they are now, in a new .reg file in `folder` (the machine's own when
/// empty; there the oldest are removed, so that `most` stay). Returns the file's path. Throws Failure when
/// that does not succeed: nothing may be written then.
std::string write_backup(const std::vector<ConfigurationChanges>& all, const std::string& folder,
                         std::size_t most);

/// The paths of the backups in the folder, the oldest first.
std::vector<std::string> backups_in(const std::string& folder);

} // namespace ctl
