#include "ctl/diff/formats.h"
#include "ctl/failure.h"
#include "ctl/io/system.h"
#include "ctl/verbs/verbs.h"

#include <algorithm>

namespace ctl {
namespace {

struct Form {
    const char* name;
    void (*print)(const Fleet&);
};

constexpr Form forms[] = {
    {"text", print_text}, {"csv", print_csv}, {"json", print_json}, {"html", print_html}};

const Form& form_named(const std::string& name) {
    const auto* const found =
        std::find_if(std::begin(forms), std::end(forms), [&](const Form& each) { return name == each.name; });
    return found == std::end(forms) ? forms[0] : *found;
}

/// A file that is not a report counts as a machine with a problem, so that it does not hide the others.
MachineDifferences compared(const State& desired, const std::string& path) {
    try {
        const auto octets = read_file(path, longest_json);
        if (!octets)
            throw Failure{ExitCode::failed, why_unreadable()};
        MachineDifferences machine = compare(desired, read_report(*octets));
        if (machine.machine.empty())
            machine.machine = path;
        return machine;
    } catch (const Failure& failure) {
        MachineDifferences machine;
        machine.machine = path;
        machine.problem = failure.text;
        return machine;
    }
}

/// A folder stands for the reports in it. A folder without reports stays in the list and gives a problem when
/// it is read, because a missing report must not look like a machine without drift.
void add_paths(std::vector<std::string>& paths, const std::string& operand) {
    const std::size_t before = paths.size();
    for (const std::string& name : names_in(operand)) {
        if (name.ends_with(".json"))
            paths.push_back(join_path(operand, name));
    }
    std::sort(paths.begin() + static_cast<std::ptrdiff_t>(before), paths.end());
    if (paths.size() == before)
        paths.push_back(operand);
}

std::vector<std::string> report_paths(const Arguments& arguments) {
    std::vector<std::string> paths;
    for (auto each = arguments.operands.begin() + 1; each != arguments.operands.end(); ++each)
        add_paths(paths, *each);
    return paths;
}

ExitCode diff(const Arguments& arguments) {
    const State desired = read_state_file(arguments.operands.front());
    std::vector<MachineDifferences> machines;
    for (const std::string& path : report_paths(arguments))
        machines.push_back(compared(desired, path));
    mark_other_spec_files(desired, machines);
    const Fleet fleet(std::move(machines));
    form_named(arguments.format).print(fleet);
    if (fleet.with_problems != 0)
        return ExitCode::invalid;
    return arguments.exit_code && fleet.drifting != 0 ? ExitCode::drift : ExitCode::success;
}

} // namespace

const Verb diff_verb{
    .name = "diff",
    .usage = "DESIRED.json REPORT.json... [--format text|csv|json|html] [--exit-code]",
    .least_operands = 2,
    .most_operands = any_number,
    .summary = "compare the reports of many machines with the desired state",
    .help = R"(
A REPORT is the output of "show --json" on a machine, or a folder with such files (*.json). Prints which machines
drift and in which values, which could not be compared, which have a restart pending, which have another spec file,
and which services are not running. --format html makes a page for a browser. The exit code is 4 if a machine could not
be compared, also without --exit-code.
)",
    .run = diff,
};

} // namespace ctl
