#pragma once
#include "ctl/arguments.h"
#include "ctl/change/plan.h"
#include "ctl/exit_codes.h"

#include <functional>
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

/// What is to be changed; throws Failure when that cannot be done.
using Planning = std::function<std::vector<ConfigurationChanges>()>;

/// Carries out a plan, which is made when no other tavrinctl changes values any more. Throws Failure when
/// nothing was written.
Done carry_out(const Machine& machine, const Planning& plan, const Arguments& arguments);

/// Makes the machine what the state says, as the arguments have it. Throws Failure when nothing was written.
Done carry_out(const Machine& machine, const State& state, const Arguments& arguments);

} // namespace ctl
