#pragma once
#include "ctl/arguments.h"
#include "ctl/change/plan.h"
#include "ctl/exit_codes.h"

#include <string>
#include <vector>

namespace ctl {

/// What set and apply have done, or with --what-if would do.
struct Done {
    std::vector<ConfigurationChanges> changes;
    /// The backup's path; empty when nothing was to be written.
    std::string backup;
    ExitCode code;
};

/// Makes the machine what the state says, as the arguments have it. Throws Failure when nothing was written.
Done carry_out(const Machine& machine, const State& state, const Arguments& arguments);

} // namespace ctl
