#pragma once
#include "ctl/change/plan.h"
#include "ctl/failure.h"

namespace ctl {

struct RestartChoice {
    /// If false, no service is stopped or started.
    bool restart;
    /// The limit for each wait for a service.
    int timeout_seconds;
};

/// Checks that everything in the plan can be written, and that the services can be restarted. Throws Failure
/// if not; nothing is written or stopped then.
void require_access(const Plan& plan, const RestartChoice& choice);

/// Writes the values that the plan needs, and records in the plan what happened to each. Configurations with
/// the same service are written together: a running service is stopped before and started afterwards, and
/// pending restarts are finished. Prints every failure. Throws Failure only if nothing was written.
ExitCode write_plan(Plan& plan, const RestartChoice& choice);

} // namespace ctl
