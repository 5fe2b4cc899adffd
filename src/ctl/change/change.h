#pragma once
#include "ctl/arguments.h"
#include "ctl/change/plan.h"
#include "ctl/failure.h"

#include <functional>

namespace ctl {

/// The result of a plan, or with --what-if the expected result.
struct ChangeResult {
    Plan plan;
    /// The backup's path; empty if nothing was to be written.
    std::string backup;
    ExitCode code;
};

/// Makes the plan, or throws Failure.
using MakePlan = std::function<Plan()>;

/// Takes every step of a change in order: lock, plan, backup, write. Throws Failure if nothing was written.
ChangeResult change_machine(const Machine& machine, const MakePlan& make_plan, const Arguments& arguments);

} // namespace ctl
