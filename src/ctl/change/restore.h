#pragma once
#include "ctl/change/plan.h"
#include "ctl/change/saved_values.h"

#include <string>
#include <vector>

namespace ctl {

/// What brings the saved values back as they were, of whatever type. Throws Failure of the code `invalid` for
/// values that no configuration of this machine has.
std::vector<ConfigurationChanges> plan_restore(const Machine& machine, const std::vector<SavedValue>& saved);

/// The path of the newest backup in the data folder. Throws Failure when there is none.
std::string newest_backup();

} // namespace ctl
