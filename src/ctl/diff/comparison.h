#pragma once
/// What a machine's report says, held against the desired state. Only what differs is kept, so that the
/// reports of a large fleet need not be in memory together.
#include "ctl/change/state_file.h"
#include "ctl/diff/machine_report.h"

#include <string>
#include <vector>

namespace ctl {

struct Difference {
    /// Both as the machine spells them.
    std::string configuration;
    std::string value;
    /// As a machine would report it.
    ReportedValue desired;
    ReportedValue current;
};

struct ReportedService {
    std::string name;
    std::string state;
    std::string start_type;
};

struct MachineDifferences {
    /// As the report names it, else the report's path.
    std::string machine;
    std::string time;
    /// Why the machine could not be compared, or not all of it; empty when it could.
    std::string problem;
    bool restart_pending = false;
    bool other_spec_file = false;
    /// Those of the configurations that were compared, as far as the report tells about them.
    std::vector<ReportedService> services;
    std::vector<std::string> spec_files;
    std::vector<Difference> differences;

    bool in_sync() const { return problem.empty() && differences.empty(); }
};

/// In the order of the desired state. The machine's name is the caller's to give when the report has none.
MachineDifferences compare(const State& desired, const MachineReport& report);

/// Marks the machines that lack a spec file for which the desired state was made, or, when it does not tell,
/// whose spec files are not those that most machines have. A machine that does not tell its own is not
/// marked.
void mark_other_spec_files(const State& desired, std::vector<MachineDifferences>& machines);

} // namespace ctl
