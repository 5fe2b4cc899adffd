#include "ctl/change/change.h"

#include "ctl/change/backup.h"
#include "ctl/change/lock.h"
#include "ctl/change/write.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/machine/data_folder.h"
#include "ctl/machine/service.h"

#include <algorithm>

namespace ctl {
namespace {

/// A restart that an earlier run left unfinished is finished even if the state does not name the
/// configuration.
void add_pending_restarts(const Machine& machine, Plan& plan) {
    for (const MachineConfiguration& each : machine) {
        const bool is_planned = std::any_of(plan.begin(), plan.end(), [&](const ConfigurationPlan& planned) {
            return planned.configuration == &each;
        });
        if (!is_planned && restart_is_pending(each.service()))
            plan.push_back({.configuration = &each, .changes = {}, .restart_is_pending = true});
    }
}

void warn_of_pending_restarts(const Plan& plan) {
    for (const ConfigurationPlan& each : plan) {
        if (each.restart_is_pending) {
            say("an earlier run left the restart of service " + to_utf8(each.configuration->service()) +
                    " unfinished; to finish it, run set or apply without \"--restart never\"",
                Level::warning);
        }
    }
}

} // namespace

ChangeResult change_machine(const Machine& machine, const MakePlan& make_plan, const Arguments& arguments) {
    std::optional<Lock> lock;
    if (!arguments.what_if) {
        prepare_data_folder();
        lock.emplace(arguments.timeout);
    }
    ChangeResult result{make_plan(), {}, ExitCode::success};
    add_pending_restarts(machine, result.plan);
    if (arguments.what_if || !arguments.restart)
        warn_of_pending_restarts(result.plan);
    if (arguments.what_if)
        return result;
    const RestartChoice choice{arguments.restart, arguments.timeout};
    if (needs_writing(result.plan)) {
        require_access(result.plan, choice);
        result.backup = write_backup(result.plan, arguments.backup, arguments.keep);
    }
    result.code = write_plan(result.plan, choice);
    return result;
}

} // namespace ctl
