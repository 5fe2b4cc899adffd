#include "ctl/change/change.h"

#include "ctl/change/backup.h"
#include "ctl/change/journal.h"
#include "ctl/change/lock.h"
#include "ctl/change/write.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/machine/data_folder.h"

#include <algorithm>

namespace ctl {
namespace {

/// What an earlier run left undone is finished, whether or not its configuration is in the state.
void add_pending_restarts(const Machine& machine, std::vector<ConfigurationChanges>& all) {
    for (const MachineConfiguration& each : machine) {
        const bool is_known = std::any_of(all.begin(), all.end(), [&](const ConfigurationChanges& changes) {
            return changes.configuration == &each;
        });
        if (!is_known && restart_is_pending(each.service()))
            all.push_back({.configuration = &each, .changes = {}, .restart_is_pending = true});
    }
}

void warn_of_pending_restarts(const std::vector<ConfigurationChanges>& all) {
    for (const ConfigurationChanges& each : all) {
        if (each.restart_is_pending)
            say("an earlier run left the restart of service " + to_utf8(each.configuration->service()) +
                    " unfinished; to finish it, run set or apply without \"--restart never\"",
                Level::warning);
    }
}

void write(Done& done, const Arguments& arguments) {
    const RestartChoice choice{arguments.restart, arguments.timeout};
    if (any_differ(done.changes)) {
        require_access(done.changes, choice);
        done.backup = write_backup(done.changes, arguments.backup, arguments.keep);
    }
    done.code = write_changes(done.changes, choice);
}

} // namespace

Done carry_out(const Machine& machine, const Planning& plan, const Arguments& arguments) {
    std::optional<Lock> lock;
    if (!arguments.what_if) {
        prepare_data_folder();
        lock.emplace(arguments.timeout);
    }
    Done done{plan(), {}, as_wished};
    add_pending_restarts(machine, done.changes);
    if (arguments.what_if || !arguments.restart)
        warn_of_pending_restarts(done.changes);
    if (!arguments.what_if)
        write(done, arguments);
    return done;
}

Done carry_out(const Machine& machine, const State& state, const Arguments& arguments) {
    return carry_out(
        machine, [&] { return plan_changes(machine, state); }, arguments);
}

} // namespace ctl
