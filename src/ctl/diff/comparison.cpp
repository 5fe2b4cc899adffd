#include "ctl/diff/comparison.h"

#include "base/text.h"
#include "ctl/io/printable.h"
#include "specfile/name_table.h"
#include "specfile/value_text.h"

#include <algorithm>
#include <map>

namespace ctl {
namespace {

/// The text that a page would store for the desired one; apply treats both as equal.
std::string stored_for(const std::string& desired, const std::string& kind) {
    Declaration declaration;
    declaration.kind = find_entry_kind(kind);
    const bool has_forms = kind == "Integer" || kind == "Boolean";
    return has_forms && !value_problem(declaration, desired) ? stored_by_page(declaration, desired) : desired;
}

ReportedValue as_reported(const DesiredValue& desired) {
    ReportedValue value;
    value.text = desired.text;
    value.type = desired.type;
    value.octets = hex_of(desired.octets.value_or(""));
    return value;
}

std::string plain_type(const std::string& type) { return type == "REG_SZ" ? "" : type; }

bool in_sync(const ReportedValue& current, const ReportedValue& desired) {
    if (!current.unreadable.empty() || plain_type(current.type) != desired.type ||
        current.octets != desired.octets)
        return false;
    return current.text == desired.text ||
           (current.text && desired.text && *current.text == stored_for(*desired.text, current.kind));
}

/// The values of one configuration by value name, or else by title, in any letter case.
class ReportedNames {
public:
    explicit ReportedNames(const std::vector<ReportedValue>& values)
        : names_(true, values.size()), titles_(true, values.size()) {
        for (std::size_t i = 0; i < values.size(); ++i) {
            names_.add(values[i].name, i + 1);
            if (titles_.add(values[i].title, i + 1) != 0)
                repeated_.add(values[i].title, i + 1);
        }
    }

    /// The value's place, counted from 1; 0 if the name is unknown, or the title of several.
    std::size_t find(const std::string& name) const {
        if (const std::size_t named = names_.find(name))
            return named;
        return repeated_.find(name) != 0 ? 0 : titles_.find(name);
    }

private:
    NameTable names_;
    NameTable titles_;
    NameTable repeated_{true};
};

/// Null if there is none, or several in other letter cases.
const ReportedConfiguration* find_configuration(const MachineReport& report, const std::string& name) {
    const ReportedConfiguration* alike = nullptr;
    std::size_t count = 0;
    for (const ReportedConfiguration& each : report.configurations) {
        if (each.name == name)
            return &each;
        if (same_ignoring_case(each.name, name)) {
            alike = &each;
            ++count;
        }
    }
    return count == 1 ? alike : nullptr;
}

void add_problem(MachineDifferences& machine, const std::string& problem) {
    machine.problem += (machine.problem.empty() ? "" : "; ") + problem;
}

void compare_values(MachineDifferences& machine, const DesiredConfiguration& desired,
                    const ReportedConfiguration& current) {
    const ReportedNames names(current.values);
    std::vector<bool> compared(current.values.size());
    for (const DesiredValue& wanted : desired.values) {
        const std::size_t place = names.find(wanted.name);
        if (place == 0) {
            add_problem(machine,
                        "no value \"" + printable(wanted.name) + "\" in \"" + printable(current.name) + "\"");
            continue;
        }
        const ReportedValue& found = current.values[place - 1];
        if (compared[place - 1]) {
            add_problem(machine, "the desired state has \"" + printable(found.name) + "\" twice");
        } else if (const ReportedValue same = as_reported(wanted); !in_sync(found, same)) {
            machine.differences.push_back({current.name, found.name, same, found});
        }
        compared[place - 1] = true;
    }
}

/// apply refuses a machine that does not match the guards.
void check_guard(MachineDifferences& machine, const char* what, const std::string& guard,
                 const std::string& current) {
    if (!guard.empty() && !same_ignoring_case(guard, current)) {
        add_problem(machine, std::string("the ") + what + " is \"" + printable(current) +
                                 "\"; the desired state is for \"" + printable(guard) + "\"");
    }
}

void compare_configuration(MachineDifferences& machine, const DesiredConfiguration& desired,
                           const ReportedConfiguration& current) {
    machine.restart_pending = machine.restart_pending || current.restart_pending;
    if (!current.service_state.empty())
        machine.services.push_back({current.service, current.service_state, current.start_type});
    check_guard(machine, "key", desired.guards.key, current.key);
    check_guard(machine, "service", desired.guards.service, current.service);
    compare_values(machine, desired, current);
}

using Sums = std::vector<std::string>;

/// The spec files that the guards name.
Sums guarded(const State& desired) {
    Sums sums;
    for (const DesiredConfiguration& each : desired) {
        if (!each.guards.sha256.empty())
            sums.push_back(each.guards.sha256);
    }
    return sums;
}

/// The spec files that most machines have; the first ones if there are several such sets.
Sums most_common(const std::vector<MachineDifferences>& machines) {
    std::map<Sums, std::size_t> counts;
    Sums common;
    for (const MachineDifferences& each : machines) {
        if (!each.spec_files.empty() && ++counts[each.spec_files] > counts[common])
            common = each.spec_files;
    }
    return common;
}

bool has_all(const Sums& present, const Sums& wanted) {
    return std::all_of(wanted.begin(), wanted.end(), [&](const std::string& sum) {
        return std::any_of(present.begin(), present.end(),
                           [&](const std::string& each) { return same_ignoring_case(each, sum); });
    });
}

} // namespace

MachineDifferences compare(const State& desired, const MachineReport& report) {
    MachineDifferences machine;
    machine.machine = report.machine;
    machine.time = report.time;
    machine.spec_files = report.spec_files;
    std::vector<const ReportedConfiguration*> compared;
    for (const DesiredConfiguration& each : desired) {
        const ReportedConfiguration* const found = find_configuration(report, each.name);
        if (found == nullptr) {
            add_problem(machine, "no configuration \"" + printable(each.name) + "\"");
        } else if (std::find(compared.begin(), compared.end(), found) != compared.end()) {
            add_problem(machine, "the desired state has \"" + printable(found->name) + "\" twice");
        } else {
            compared.push_back(found);
            compare_configuration(machine, each, *found);
        }
    }
    return machine;
}

void mark_other_spec_files(const State& desired, std::vector<MachineDifferences>& machines) {
    const Sums wanted = guarded(desired);
    const Sums common = most_common(machines);
    for (MachineDifferences& each : machines) {
        const bool is_other = wanted.empty() ? each.spec_files != common : !has_all(each.spec_files, wanted);
        each.other_spec_file = is_other && !each.spec_files.empty();
    }
}

} // namespace ctl
