#pragma once
/// Compares a machine's report with the desired state. Only differences are kept, so that the reports of a
/// large fleet need not be in memory together.
#include "ctl/change/state_file.h"
#include "ctl/diff/machine_report.h"

#include <string>
#include <vector>

namespace ctl {

struct Difference {
    /// Both in the spelling of the machine's report.
    std::string configuration;
    std::string value;
    /// In the form in which a machine would report it.
    ReportedValue desired;
    ReportedValue current;
};

struct ReportedService {
    std::string name;
    std::string state;
    std::string start_type;
};

struct MachineDifferences {
    /// The name in the report, or else the report's path.
    std::string machine;
    std::string time;
    /// Why the machine could not be compared completely; empty if it could.
    std::string problem;
    bool restart_pending = false;
    bool other_spec_file = false;
    /// The services of the configurations that were compared, as far as the report has them.
    std::vector<ReportedService> services;
    std::vector<std::string> spec_files;
    std::vector<Difference> differences;

    bool in_sync() const { return problem.empty() && differences.empty(); }
};

/// In the order of the desired state. If the report has no name for the machine, the caller sets one.
MachineDifferences compare(const State& desired, const MachineReport& report);

/// Marks the machines that lack a spec file that the state's guards name. Without such guards, marks those
/// whose spec files differ from those of most machines. A machine whose report has no spec files is not
/// marked.
void mark_other_spec_files(const State& desired, std::vector<MachineDifferences>& machines);

} // namespace ctl
