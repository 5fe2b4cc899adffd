#include "ctl/change/plan.h"

#include "ctl/check/state_check.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/io/printable.h"
#include "ctl/io/registry_names.h"
#include "ctl/io/system.h"
#include "ctl/machine/service.h"
#include "specfile/value_text.h"
#include "store/registry_key.h"

#include <algorithm>
#include <utility>

namespace ctl {
namespace {

/// The ports are those of the machine, because the spec file does not list them. A port that is not plugged
/// in yet is accepted by the name that the system will give it.
std::optional<std::string> port_problem(const std::string& text) {
    const bool is_numbered = text.starts_with("COM") && text.size() > 3 && text[3] != '0' &&
                             text.find_first_not_of("0123456789", 3) == std::string::npos;
    const std::vector<std::string> ports = serial_ports();
    if (text.empty() || is_numbered || std::find(ports.begin(), ports.end(), text) != ports.end())
        return std::nullopt;
    return "not a serial port";
}

std::optional<std::string> problem_with(const std::string& text, const Declaration& declaration) {
    const auto problem = value_problem(declaration, text);
    return !problem && declaration.kind->type == "COM" ? port_problem(text) : problem;
}

/// A stored value that matches is accepted even if it breaks the rules for new values.
Change change_to(const std::string& text, const Declaration& declaration, StoredValue before) {
    Change change{&declaration, std::move(before), text};
    if (change.before.holds(text))
        return change;
    if (const auto problem = problem_with(text, declaration))
        throw refusal(text, *problem, machine_code_page());
    change.after = stored_by_page(declaration, text);
    change.is_needed = !change.before.holds(*change.after);
    return change;
}

bool is_stored(const DesiredValue& desired, const StoredValue& stored) {
    if (!stored.is_there || stored.is_too_long || type_name(stored.type) != desired.type)
        return false;
    return desired.octets ? stored.octets == desired.octets
                          : !stored.octets && to_utf8(stored.text) == *desired.text;
}

/// The tool writes texts only, so a value of another type must be stored already.
Change kept(const DesiredValue& desired, const Declaration& declaration, StoredValue before) {
    if (!is_stored(desired, before)) {
        throw "only texts can be written; a value of the type " + printable(desired.type) +
            " is accepted only if it is already stored, but stored here is " + shown(before);
    }
    Change change{&declaration, std::move(before), std::nullopt};
    change.is_kept = true;
    return change;
}

Change change_for(const DesiredValue& desired, const Declaration& declaration, StoredValue before) {
    if (!desired.type.empty())
        return kept(desired, declaration, std::move(before));
    if (desired.text) {
        return change_to(desired_text(desired, declaration, machine_code_page()), declaration,
                         std::move(before));
    }
    const bool is_there = before.is_there;
    return {&declaration, std::move(before), std::nullopt, is_there};
}

/// Plans one configuration.
class Planner {
public:
    Planner(const MachineConfiguration& configuration, Problems& problems)
        : configuration_(configuration), entries_(configuration.spec, machine_code_page()),
          problems_(problems) {
        try {
            key_.emplace(configuration.key(), KEY_QUERY_VALUE);
        } catch (const Failure& failure) {
            if (failure.code != ExitCode::invalid)
                throw;
            missing_key_ = failure;
        }
    }

    ConfigurationPlan plan(const std::vector<DesiredValue>& values) {
        for (const DesiredValue& each : values)
            take(each);
        std::sort(changes_.begin(), changes_.end(),
                  [](const auto& one, const auto& other) { return one.first < other.first; });
        ConfigurationPlan plan{&configuration_, {}};
        plan.changes.reserve(changes_.size());
        for (auto& [place, change] : changes_)
            plan.changes.push_back(std::move(change));
        plan.restart_is_pending = restart_is_pending(configuration_.service());
        if (plan.needs_writing() && missing_key_)
            throw Failure(*missing_key_);
        return plan;
    }

private:
    void take(const DesiredValue& desired) {
        try {
            add(desired);
        } catch (const std::string& problem) {
            problems_.add(to_utf8(configuration_.name) + ": " + printable(desired.name) + ": " + problem);
        }
    }

    void add(const DesiredValue& desired) {
        const std::size_t place = entries_.place_of(desired);
        const Declaration& declaration = configuration_.spec.entries[place].declaration;
        StoredValue before =
            key_ ? read_value(*key_, std::string(declaration.value_name.text)) : StoredValue{};
        changes_.emplace_back(place, change_for(desired, declaration, std::move(before)));
    }

    const MachineConfiguration& configuration_;
    DesiredEntries entries_;
    Problems& problems_;
    /// The key has to exist only if something is to be written.
    std::optional<LocalKey> key_;
    std::optional<Failure> missing_key_;
    /// Each with the place of its entry in the spec file.
    std::vector<std::pair<std::size_t, Change>> changes_;
};

/// A guard that does not match is a problem; other members that do not match only give a warning. The digest
/// is computed only for a guard, because the whole file has to be read for it.
void check_origin(const MachineConfiguration& configuration, const DesiredConfiguration& desired,
                  Problems& problems) {
    const std::string name = to_utf8(configuration.name) + ": ";
    const Guards facts{
        to_utf8(configuration.key()), to_utf8(configuration.service()),
        desired.guards.sha256.empty() ? "" : sha256_of_file(to_utf8(configuration.path)).value_or("")};
    const std::string broken = name + "a guard of the state does not hold: ";
    for (const std::string& each : contradictions(desired.guards, facts))
        problems.add(broken + each);
    for (const std::string& each : contradictions({desired.key, desired.service, {}}, facts))
        say(name + each, Level::warning);
}

ConfigurationPlan* find(Plan& plan, const MachineConfiguration& configuration) {
    const auto found = std::find_if(plan.begin(), plan.end(), [&](const ConfigurationPlan& each) {
        return each.configuration == &configuration;
    });
    return found == plan.end() ? nullptr : &*found;
}

void add_desired(const Machine& machine, const DesiredConfiguration& desired, Plan& plan,
                 Problems& problems) {
    const MachineConfiguration& configuration = configuration_named(machine, desired.name);
    if (find(plan, configuration) != nullptr) {
        throw Failure{ExitCode::invalid,
                      "the configuration \"" + printable(desired.name) + "\" is given twice"};
    }
    check_origin(configuration, desired, problems);
    plan.push_back(Planner(configuration, problems).plan(desired.values));
}

/// Null if the configuration has no such value.
const Declaration* find_declaration(const MachineConfiguration& configuration, const SavedValue& saved) {
    if (!is_same_registry_name(to_utf8(configuration.key()), saved.key))
        return nullptr;
    for (const SpecEntry& each : configuration.spec.entries) {
        if (each.declaration.has_value() &&
            is_same_registry_name(to_utf8(each.declaration.value_name.text), saved.name))
            return &each.declaration;
    }
    return nullptr;
}

void add_saved(const SavedValue& saved, const MachineConfiguration& configuration,
               const Declaration& declaration, Plan& plan) {
    ConfigurationPlan* found = find(plan, configuration);
    if (found == nullptr) {
        plan.push_back({.configuration = &configuration, .changes = {}});
        found = &plan.back();
        found->restart_is_pending = restart_is_pending(configuration.service());
    }
    const LocalKey key(configuration.key(), KEY_QUERY_VALUE);
    const std::string name(declaration.value_name.text);
    const bool is_needed = read_exactly(key, name) != saved.value;
    found->changes.push_back({.declaration = &declaration,
                              .before = read_value(key, name),
                              .after = std::nullopt,
                              .is_needed = is_needed,
                              .saved = saved.value});
}

/// If several configurations share a key and a value, the first one gets it.
void add_saved(const Machine& machine, const SavedValue& saved, Plan& plan) {
    for (const MachineConfiguration& each : machine) {
        if (const Declaration* const declaration = find_declaration(each, saved))
            return add_saved(saved, each, *declaration, plan);
    }
    throw Failure{ExitCode::invalid, "nothing was written: no configuration has the value \"" +
                                         printable(saved.name) + "\" of HKEY_LOCAL_MACHINE\\" +
                                         printable(saved.key)};
}

} // namespace

bool ConfigurationPlan::needs_writing() const {
    return std::any_of(changes.begin(), changes.end(), [](const Change& each) { return each.is_needed; });
}

bool needs_writing(const Plan& plan) {
    return std::any_of(plan.begin(), plan.end(), [](const auto& each) { return each.needs_writing(); });
}

bool is_in_sync(const Plan& plan) {
    return std::all_of(plan.begin(), plan.end(), [](const auto& each) { return each.is_in_sync(); });
}

Plan plan_state(const Machine& machine, const State& state) {
    Plan plan;
    Problems problems;
    for (const DesiredConfiguration& desired : state) {
        try {
            add_desired(machine, desired, plan, problems);
        } catch (const Failure& failure) {
            if (failure.code != ExitCode::invalid)
                throw;
            problems.add(failure.text);
        }
    }
    problems.refuse_if_any();
    return plan;
}

Plan plan_restore(const Machine& machine, const std::vector<SavedValue>& saved) {
    Plan plan;
    for (const SavedValue& each : saved)
        add_saved(machine, each, plan);
    return plan;
}

} // namespace ctl
