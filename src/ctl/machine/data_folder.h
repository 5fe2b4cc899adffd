#pragma once
#include <string>

namespace ctl {

/// This machine's folder for what one run leaves for the next: backups, the lock and the restarts that are
/// still to be finished. In UTF-8, without a separator at its end. Nothing is created.
std::string data_folder();

/// The folder in it where backups go unless the caller names another.
std::string backup_folder();

/// Creates both where they are missing, for SYSTEM and administrators alone, and makes existing ones so.
/// Every user may create folders beside them, so one that is a link, or that somebody else owns, is refused:
/// throws Failure, which says what to do.
void prepare_data_folder();

} // namespace ctl
