#include "ctl/change/backup.h"
#include "ctl/change/report.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/verbs/verbs.h"

namespace ctl {
namespace {

/// Splits at the first "=", because a value may contain others.
DesiredValue desired_by(const std::string& word) {
    const std::size_t end = word.find('=');
    if (end == std::string::npos || end == 0)
        throw Failure{ExitCode::usage, "\"" + word + "\" is not NAME=VALUE\nusage: " + usage_of(set_verb)};
    return {word.substr(0, end), word.substr(end + 1)};
}

/// Written values stay written even if the report is lost, so prints a message about this. The exit code
/// still says whether a service did not restart.
ExitCode print_report(const ChangeResult& result, const Arguments& arguments) {
    try {
        print(arguments.json ? to_text(report_json(result, arguments.what_if))
                             : report_text(result, arguments.what_if));
        finish_output();
    } catch (const Failure& failure) {
        if (result.backup.empty())
            throw;
        say(failure.text + "; the values were written, the previous ones saved to " + result.backup);
        return result.code == ExitCode::success ? failure.code : result.code;
    }
    const bool tells_drift = arguments.exit_code && !is_in_sync(result.plan);
    return result.code == ExitCode::success && tells_drift ? ExitCode::drift : result.code;
}

ExitCode change_and_report(const State& state, const Arguments& arguments) {
    const Machine machine = read_machine();
    const auto make_plan = [&] { return plan_state(machine, state); };
    return print_report(change_machine(machine, make_plan, arguments), arguments);
}

ExitCode set(const Arguments& arguments) {
    DesiredConfiguration desired{arguments.operands.front(), {}, {}};
    for (std::size_t i = 1; i < arguments.operands.size(); ++i)
        desired.values.push_back(desired_by(arguments.operands[i]));
    return change_and_report({desired}, arguments);
}

ExitCode apply(const Arguments& arguments) {
    return change_and_report(read_state_file(arguments.operands.front()), arguments);
}

ExitCode restore(const Arguments& arguments) {
    if (arguments.operands.empty() != arguments.last) {
        throw Failure{ExitCode::usage,
                      "restore needs either a backup or --last\nusage: " + usage_of(restore_verb)};
    }
    const Machine machine = read_machine();
    const auto make_plan = [&] {
        return plan_restore(machine,
                            read_backup(arguments.last ? newest_backup() : arguments.operands.front()));
    };
    return print_report(change_machine(machine, make_plan, arguments), arguments);
}

} // namespace

const Verb set_verb{
    .name = "set",
    .usage = "CONFIG NAME=VALUE... [--json] [--verbose] [--what-if] [--exit-code] [--restart auto|never] "
             "[--timeout SECONDS] [--backup FOLDER] [--keep N]",
    .least_operands = 2,
    .most_operands = any_number,
    .summary = "change values of one configuration",
    .help = R"(
NAME is a value name in any letter case, or the title of an entry if no other entry has it. All values are
checked before any is written, and a value that matches is left alone. The previous values are saved to a
.reg file first. If the configuration's service is running, it is stopped before the values are written and
started afterwards; --timeout applies to each of the two waits.
)",
    .run = set,
};

const Verb apply_verb{
    .name = "apply",
    .usage = "STATE.json [--json] [--verbose] [--what-if] [--exit-code] [--restart auto|never] [--timeout "
             "SECONDS] [--backup FOLDER] [--keep N]",
    .least_operands = 1,
    .most_operands = 1,
    .summary = "set the values that a state file lists",
    .help = R"(
Reads a state, in the form of the output of show --json, from a file or, for "-", from the standard input, and
changes the values that differ from it. Values that the state does not name are left alone, and null removes a
value. Otherwise it works like set.
)",
    .run = apply,
};

const Verb restore_verb{
    .name = "restore",
    .usage = "[BACKUP.reg] [--last] [--json] [--verbose] [--what-if] [--exit-code] [--restart auto|never] "
             "[--timeout SECONDS] [--backup FOLDER] [--keep N]",
    .most_operands = 1,
    .summary = "restore the values that set or apply saved",
    .help = R"(
Reads a backup that set, apply or restore saved, and no other file, and restores its values, whatever their
type. Name the file, or use --last for the newest one in the default folder. The current values are saved
first, so the next restore --last undoes this one. Otherwise it works like set.
)",
    .run = restore,
};

} // namespace ctl
