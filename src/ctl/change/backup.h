#pragma once
#include "ctl/change/plan.h"

namespace ctl {

/// Saves the current values of everything that `plan` writes in a new .reg file in `folder`. If `folder` is
/// empty, it goes to the machine's own folder, where only the newest `most` backups stay. Returns the file's
/// path. Throws Failure if that fails; then nothing may be written.
std::string write_backup(const Plan& plan, const std::string& folder, std::size_t most);

/// The path of the newest backup in the machine's own folder. Throws Failure if there is none.
std::string newest_backup();

/// The values in the backup at `path`. Throws Failure, whose text begins with the path.
std::vector<SavedValue> read_backup(const std::string& path);

} // namespace ctl
