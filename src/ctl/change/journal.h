#pragma once
/// Remembers from one run to the next which services were stopped and do not run again yet with the new
/// values: a file for each, in the machine's data folder.
#include <string>

namespace ctl {

/// Whether an earlier run did not finish the restart of this service. The name is in the machine's code page.
bool restart_is_pending(const std::string& service);

/// Before the service is stopped: it is on the disk when this returns. Throws Failure when that fails.
void note_restart(const std::string& service);
/// The service runs with the new values, or is not there any more.
void forget_restart(const std::string& service);

} // namespace ctl
