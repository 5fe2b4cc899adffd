#include "ctl/change/change.h"

#include "ctl/change/backup.h"
#include "ctl/change/lock.h"
#include "ctl/change/report.h"
#include "ctl/change/write.h"
#include "ctl/io/console.h"

namespace ctl {
namespace {

void write(Done& done, const Arguments& arguments) {
    require_write_access(done.changes);
    done.backup = write_backup(done.changes, arguments.backup);
    say("the values as they were are in " + done.backup, Level::info);
    const Outcome outcome = execute(done.changes, {arguments.restart, arguments.timeout});
    if (!outcome.text.empty())
        say(outcome.text);
    done.code = outcome.code;
}

} // namespace

Done carry_out(const Machine& machine, const State& state, const Arguments& arguments) {
    const OneAtATime only(arguments.timeout);
    Done done{plan_changes(machine, state), {}, as_wished};
    const bool differs = any_differ(done.changes);
    if (!differs)
        say("everything is as wished, nothing is changed", Level::info);
    if (differs && !arguments.what_if)
        write(done, arguments);
    return done;
}

int carry_out_and_report(const State& state, const Arguments& arguments) {
    const Machine machine = read_machine();
    const Done done = carry_out(machine, state, arguments);
    print(to_text(report_of(done.changes, arguments.what_if, done.backup)));
    if (done.code == as_wished && arguments.exit_code && any_differ(done.changes))
        return differs;
    return done.code;
}

} // namespace ctl
