#pragma once
#include <string>

namespace ctl {

/// The path of this machine's folder for files that later runs need: backups, the lock and notes of
/// unfinished restarts. It is in UTF-8 and has no separator at its end. Does not create the folder.
std::string data_folder();

/// The folder in it for backups.
std::string backup_folder();

/// Creates both folders if they are missing, and gives access to SYSTEM and the administrators alone. Every
/// user may create folders beside them. So if one of them is a link, or belongs to somebody else, throws a
/// Failure that says what to do.
void prepare_data_folder();

} // namespace ctl
