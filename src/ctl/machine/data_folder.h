#pragma once
#include <string>

namespace ctl {

/// This machine's folder for what one run leaves for the next: backups, the lock and the restarts that are
/// still to be finished. In UTF-8, without a separator at its end. Nothing is created.
std::string data_folder();

} // namespace ctl
