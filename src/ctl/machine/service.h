#pragma once
#include "platform/win32.h"

#include <chrono>
#include <string>

namespace ctl {

/// What the service manager says of a service, in the words of a report.
struct ServiceInfo {
    /// "running", "stopped", "startPending", "stopPending", "continuePending", "pausePending", "paused",
    /// "missing" when there is no such service, or "unknown" when the manager does not say.
    std::string state;
    /// "automatic", "manual", "disabled", "boot" or "system"; empty when that is not known.
    std::string start_type;
};

/// Looks the service up by its name, in the machine's code page, with the rights that every user has.
ServiceInfo service_info(const std::string& name);

/// The rights for a restart. An administrator may delegate these alone.
inline constexpr DWORD restart_rights =
    SERVICE_QUERY_STATUS | SERVICE_QUERY_CONFIG | SERVICE_START | SERVICE_STOP;

/// Looks at everything that would keep a service from being stopped and started again, while nothing is
/// stopped or written yet; waits until it has started or stopped if it is about to. Throws Failure for what
/// it finds, `access_denied` or `failed`. A service that does not exist needs no restart.
void require_restartable(const std::string& name, std::chrono::milliseconds limit);

/// Waits until the service neither starts nor stops, as long as it may.
void wait_until_settled(const std::string& name, std::chrono::milliseconds limit);

} // namespace ctl
