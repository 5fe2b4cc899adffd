#pragma once
/// The services of this machine. Their names are in the machine's code page.
#include "platform/win32.h"

#include <chrono>
#include <string>

namespace ctl {

/// The state of a service in the words of a report.
struct ServiceInfo {
    /// "running", "stopped", "startPending", "stopPending", "continuePending", "pausePending", "paused",
    /// "missing" if there is no such service, or "unknown" if the service manager does not report it.
    std::string state;
    /// "automatic", "manual", "disabled", "boot" or "system"; empty if it is unknown.
    std::string start_type;
};

/// Asks the service manager with the rights that every user has.
ServiceInfo service_info(const std::string& name);

/// The rights that a restart needs, and no others, so that an administrator can delegate just these.
inline constexpr DWORD restart_rights =
    SERVICE_QUERY_STATUS | SERVICE_QUERY_CONFIG | SERVICE_START | SERVICE_STOP;

/// Checks that the service can be stopped and started again, before anything is stopped or written. Waits for
/// a service that is starting or stopping. Throws Failure: `access_denied` or `failed`. A service that does
/// not exist needs no restart.
void require_restartable(const std::string& name, std::chrono::milliseconds limit);

/// Waits until the service is neither starting nor stopping, but no longer than `limit`.
void wait_until_settled(const std::string& name, std::chrono::milliseconds limit);

/// Whether an earlier run did not finish the restart of this service. A file in the data folder remembers it
/// from one run to the next.
bool restart_is_pending(const std::string& service);
/// Notes the restart before the service is stopped; the note is on the disk when this returns. Throws Failure
/// if that fails.
void note_restart(const std::string& service);
/// Removes the note: the service runs with the new values, or does not exist any more.
void forget_restart(const std::string& service);

} // namespace ctl
