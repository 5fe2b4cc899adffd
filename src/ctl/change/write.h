#pragma once
#include "ctl/change/plan.h"
#include "ctl/exit_codes.h"

namespace ctl {

struct RestartChoice {
    /// False: no service is stopped or started.
    bool restart;
    /// For each wait for a service.
    int timeout_seconds;
};

/// Looks at everything that would keep what differs from being written, and the services from being
/// restarted. Throws Failure for what it finds; nothing is written or stopped then.
void require_access(const std::vector<ConfigurationChanges>& all, const RestartChoice& choice);

/// Writes what differs. Configurations with the same service are written together, with that service stopped
/// meanwhile when it runs, and restarts that are pending are finished. Every failure is said; the changes
/// tell what became of each value. Throws Failure only when nothing was written.
ExitCode write_changes(std::vector<ConfigurationChanges>& all, const RestartChoice& choice);

} // namespace ctl
