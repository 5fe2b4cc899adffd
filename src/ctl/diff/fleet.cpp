#include "ctl/diff/formats.h"
#include "ctl/io/visible.h"

namespace ctl {

Fleet::Fleet(std::vector<MachineDifferences> all) : machines(std::move(all)) {
    for (const MachineDifferences& each : machines) {
        in_sync += each.in_sync();
        with_problems += !each.problem.empty();
        restart_pending += each.restart_pending;
        other_spec_file += each.other_spec_file;
    }
    drifting = machines.size() - in_sync - with_problems;
}

const char* state_word(const MachineDifferences& machine) {
    if (!machine.problem.empty())
        return "problem";
    return machine.differences.empty() ? "in sync" : "drift";
}

std::vector<std::string> notes_on(const MachineDifferences& machine) {
    std::vector<std::string> notes;
    if (machine.restart_pending)
        notes.emplace_back("restart pending");
    if (machine.other_spec_file)
        notes.emplace_back("another spec file");
    for (const ReportedService& each : machine.services) {
        if (each.state != "running" || each.start_type == "disabled") {
            notes.push_back(visible(each.name) + ": " + visible(each.state) +
                            (each.start_type == "disabled" ? ", disabled" : ""));
        }
    }
    return notes;
}

} // namespace ctl
