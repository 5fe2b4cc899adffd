#include "ctl/change/change.h"
#include "ctl/change/report.h"
#include "ctl/change/restore.h"
#include "ctl/change/state_file.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/files.h"
#include "ctl/verbs/verbs.h"

#include <algorithm>

namespace ctl {
namespace {

/// At the first "=": a value may hold more of them.
WishedValue wished_by(const std::string& word) {
    const std::size_t end = word.find('=');
    if (end == std::string::npos || end == 0)
        throw Failure{usage, "\"" + word + "\" is not NAME=VALUE\nusage: " + usage_of(set_verb)};
    return {word.substr(0, end), word.substr(end + 1)};
}

std::string report(const Done& done, const Arguments& arguments) {
    return arguments.json ? to_text(report_of(done.changes, arguments.what_if, done.backup))
                          : report_text(done.changes, arguments.what_if, done.backup);
}

/// Values that are written stay written, so a caller who does not get the report is told so, and a service
/// that did not restart is still what the exit code says.
int print_report(const Done& done, const Arguments& arguments) {
    try {
        print(report(done, arguments));
        finish_output();
    } catch (const Failure& failure) {
        if (done.backup.empty())
            throw;
        say(failure.text + "; the values were written, the previous ones saved to " + done.backup);
        return done.code == as_wished ? failure.code : done.code;
    }
    const bool tells_difference = arguments.exit_code && !all_in_sync(done.changes);
    return done.code == as_wished && tells_difference ? differs : done.code;
}

int change_and_report(const State& state, const Arguments& arguments) {
    const Machine machine = read_machine();
    return print_report(carry_out(machine, state, arguments), arguments);
}

std::vector<SavedValue> read_saved(const std::string& path) {
    const auto octets = read_file(path);
    if (!octets)
        throw Failure{failed, path + ": " + why_unreadable()};
    try {
        return read_backup(*octets);
    } catch (const Failure& failure) {
        throw Failure{failure.code, path + ": " + failure.text};
    }
}

int restore(const Arguments& arguments) {
    if (arguments.operands.empty() != arguments.last)
        throw Failure{usage, "restore needs either a backup or --last\nusage: " + usage_of(restore_verb)};
    const Machine machine = read_machine();
    const auto plan = [&] {
        return plan_restore(machine,
                            read_saved(arguments.last ? newest_backup() : arguments.operands.front()));
    };
    return print_report(carry_out(machine, plan, arguments), arguments);
}

int set(const Arguments& arguments) {
    WishedConfiguration wished{arguments.operands.front(), {}, {}};
    for (std::size_t i = 1; i < arguments.operands.size(); ++i)
        wished.values.push_back(wished_by(arguments.operands[i]));
    return change_and_report({wished}, arguments);
}

int apply(const Arguments& arguments) {
    return change_and_report(read_state_file(arguments.operands.front()), arguments);
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
checked before one is written, and a value that matches is left alone. The previous values are saved to a
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
    .summary = "change values to those of a state file",
    .help = R"(
Reads a state, as show --json prints it, from a file or, for "-", from the standard input, and changes the
values that differ from it. Values that the state does not name are left alone, and null removes one.
Everything else is as with set.
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
first, so the next restore --last undoes this one. Everything else is as with set.
)",
    .run = restore,
};

} // namespace ctl
