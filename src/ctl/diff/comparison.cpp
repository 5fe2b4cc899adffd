#include "ctl/diff/comparison.h"

#include "ctl/io/visible.h"
#include "specfile/name_table.h"
#include "specfile/value_text.h"

#include <algorithm>
#include <map>

namespace ctl {
namespace {

/// As apply does: what a page would store for the desired text is in sync as well.
bool holds(const ReportedValue& current, const std::string& desired) {
    const bool is_text = current.type.empty() || current.type == "REG_SZ" || current.type == "REG_EXPAND_SZ";
    if (!current.text || !is_text || !current.unreadable.empty())
        return false;
    if (*current.text == desired)
        return true;
    Declaration declaration;
    declaration.kind = find_entry_kind(current.kind);
    const bool has_forms = current.kind == "Integer" || current.kind == "Boolean";
    return has_forms && !value_problem(declaration, desired) &&
           *current.text == stored_by_page(declaration, desired);
}

bool in_sync(const ReportedValue& current, const std::optional<std::string>& desired) {
    if (desired)
        return holds(current, *desired);
    return !current.text && current.type.empty() && current.unreadable.empty();
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

    /// The value's place, counted from 1; 0 when the name is unknown, or the title of several.
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

/// Null when there is none, or several in other letter cases.
const ReportedConfiguration* find_configuration(const MachineReport& report, const std::string& name) {
    const ReportedConfiguration* alike = nullptr;
    std::size_t count = 0;
    for (const ReportedConfiguration& each : report.configurations) {
        if (each.name == name)
            return &each;
        if (same_name(each.name, name)) {
            alike = &each;
            ++count;
        }
    }
    return count == 1 ? alike : nullptr;
}

void add_problem(MachineDifferences& machine, const std::string& problem) {
    machine.problem += (machine.problem.empty() ? "" : "; ") + problem;
}

void compare_values(MachineDifferences& machine, const WishedConfiguration& desired,
                    const ReportedConfiguration& current) {
    const ReportedNames names(current.values);
    std::vector<bool> compared(current.values.size());
    for (const WishedValue& wished : desired.values) {
        const std::size_t place = names.find(wished.name);
        if (place == 0) {
            add_problem(machine,
                        "no value \"" + visible(wished.name) + "\" in \"" + visible(current.name) + "\"");
            continue;
        }
        const ReportedValue& found = current.values[place - 1];
        if (compared[place - 1])
            add_problem(machine, "the desired state has \"" + visible(found.name) + "\" twice");
        else if (!in_sync(found, wished.text))
            machine.differences.push_back({current.name, found.name, wished.text, found});
        compared[place - 1] = true;
    }
}

void compare_configuration(MachineDifferences& machine, const WishedConfiguration& desired,
                           const ReportedConfiguration& current) {
    machine.restart_pending = machine.restart_pending || current.restart_pending;
    if (!current.service_state.empty())
        machine.services.push_back({current.service, current.service_state, current.start_type});
    compare_values(machine, desired, current);
}

} // namespace

MachineDifferences compare(const State& desired, const MachineReport& report) {
    MachineDifferences machine;
    machine.machine = report.machine;
    machine.time = report.time;
    machine.spec_files = report.spec_files;
    std::vector<const ReportedConfiguration*> compared;
    for (const WishedConfiguration& each : desired) {
        const ReportedConfiguration* const found = find_configuration(report, each.name);
        if (found == nullptr) {
            add_problem(machine, "no configuration \"" + visible(each.name) + "\"");
        } else if (std::find(compared.begin(), compared.end(), found) != compared.end()) {
            add_problem(machine, "the desired state has \"" + visible(found->name) + "\" twice");
        } else {
            compared.push_back(found);
            compare_configuration(machine, each, *found);
        }
    }
    return machine;
}

void mark_other_spec_files(std::vector<MachineDifferences>& machines) {
    std::map<std::vector<std::string>, std::size_t> counts;
    const std::vector<std::string>* common = nullptr;
    for (const MachineDifferences& each : machines) {
        if (each.spec_files.empty())
            continue;
        const std::size_t count = ++counts[each.spec_files];
        if (common == nullptr || count > counts[*common])
            common = &each.spec_files;
    }
    for (MachineDifferences& each : machines)
        each.other_spec_file = !each.spec_files.empty() && each.spec_files != *common;
}

} // namespace ctl
