#pragma once
#include <string>

namespace ctl {

/// This machine's folder for what one run leaves for the next: backups, the lock and notes of unfinished
/// restarts. In UTF-8, without a separator at its end. Creates nothing.
std::string data_folder();

/// The folder in it for backups.
std::string backup_folder();

/// Creates both folders if they are missing, and gives them to SYSTEM and the administrators alone. Every
/// user may create folders beside them, so a folder that is a link, or that somebody else owns, is refused:
/// throws Failure, which says what to do.
void prepare_data_folder();

} // namespace ctl
