#pragma once
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

} // namespace ctl
