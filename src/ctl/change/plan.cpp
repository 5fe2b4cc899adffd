#include "ctl/change/plan.h"

#include "ctl/change/journal.h"
#include "ctl/change/state_check.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/io/reg_file.h"
#include "ctl/io/sha256.h"
#include "ctl/io/visible.h"
#include "specfile/value_text.h"
#include "store/registry_key.h"

#include <algorithm>
#include <utility>

namespace ctl {
namespace {

/// Which ports there are the machine knows, not the spec file. One that is still to be plugged in may be
/// named as the system will name it.
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

/// What the tool could not have written itself may stay, but it is not written anew.
Change change_to(const std::string& text, const Declaration& declaration, StoredValue before) {
    Change change{&declaration, std::move(before), text};
    if (change.before.holds(text))
        return change;
    if (const auto problem = problem_with(text, declaration))
        throw refusal(text, *problem, machine_code_page());
    change.after = stored_by_page(declaration, text);
    change.differs = !change.before.holds(*change.after);
    return change;
}

bool is_stored(const WishedValue& wished, const StoredValue& stored) {
    if (!stored.is_there || stored.is_too_long || type_name(stored.type) != wished.type)
        return false;
    return wished.octets ? stored.octets == wished.octets
                         : !stored.octets && to_utf8(stored.text) == *wished.text;
}

/// The tool writes texts, so a value of another type is one that is there already.
Change kept(const WishedValue& wished, const Declaration& declaration, StoredValue before) {
    if (!is_stored(wished, before))
        throw "only texts can be written; a value of the type " + visible(wished.type) +
            " is accepted only if it is already stored, but stored here is " + shown(before);
    Change change{&declaration, std::move(before), std::nullopt};
    change.is_kept = true;
    return change;
}

Change change_for(const WishedValue& wished, const Declaration& declaration, StoredValue before) {
    if (!wished.type.empty())
        return kept(wished, declaration, std::move(before));
    if (wished.text)
        return change_to(desired_text(wished, declaration, machine_code_page()), declaration,
                         std::move(before));
    const bool is_there = before.is_there;
    return {&declaration, std::move(before), std::nullopt, is_there};
}

/// The configuration's key, which need not exist where nothing is to be written.
class ReadableKey {
public:
    explicit ReadableKey(const std::string& path) {
        try {
            key_.emplace(path, KEY_QUERY_VALUE);
        } catch (const Failure& failure) {
            if (failure.code != invalid)
                throw;
            missing_ = failure;
        }
    }

    StoredValue look_up(const std::string& name) const {
        return key_ ? ctl::look_up(*key_, name) : StoredValue{};
    }
    void require() const {
        if (missing_)
            throw Failure(*missing_);
    }

private:
    std::optional<MachineKey> key_;
    std::optional<Failure> missing_;
};

class Planning {
public:
    Planning(const MachineConfiguration& configuration, Problems& problems)
        : configuration_(configuration), entries_(configuration.spec, machine_code_page()),
          problems_(problems), key_(configuration.key()) {}

    ConfigurationChanges plan(const std::vector<WishedValue>& values) {
        changes_.reserve(values.size());
        for (const WishedValue& each : values)
            take(each);
        ConfigurationChanges all{&configuration_, {}};
        all.changes.reserve(changes_.size());
        std::sort(places_.begin(), places_.end());
        for (const auto& [place, number] : places_)
            all.changes.push_back(std::move(changes_[number]));
        if (all.differ())
            key_.require();
        return all;
    }

private:
    void take(const WishedValue& wished) {
        try {
            add(wished);
        } catch (const std::string& problem) {
            problems_.add(to_utf8(configuration_.name) + ": " + visible(wished.name) + ": " + problem);
        }
    }

    void add(const WishedValue& wished) {
        const std::size_t place = entries_.place_of(wished);
        const Declaration& declaration = configuration_.spec.entries[place].declaration;
        changes_.push_back(
            change_for(wished, declaration, key_.look_up(std::string(declaration.value_name.text))));
        places_.emplace_back(place, changes_.size() - 1);
    }

    const MachineConfiguration& configuration_;
    DesiredEntries entries_;
    Problems& problems_;
    ReadableKey key_;
    std::vector<Change> changes_;
    /// The entries that have one, and which.
    std::vector<std::pair<std::size_t, std::size_t>> places_;
};

/// The digest only where it is asked for: the file is read for it.
Guards facts_of(const MachineConfiguration& configuration, bool with_digest) {
    return {to_utf8(configuration.key()), to_utf8(configuration.service()),
            with_digest ? sha256_of_file(to_utf8(configuration.path)).value_or("") : ""};
}

/// Guards refuse; what only informs warns.
void check_origin(const MachineConfiguration& configuration, const WishedConfiguration& wished,
                  Problems& problems) {
    const std::string name = to_utf8(configuration.name) + ": ";
    const Guards facts = facts_of(configuration, !wished.guards.sha256.empty());
    for (const std::string& each : contradictions(wished.guards, facts))
        problems.add(name + "a guard of the state does not hold: " + each);
    for (const std::string& each : contradictions({wished.key, wished.service, {}}, facts))
        say(name + each, Level::warning);
}

void plan_one(const Machine& machine, const WishedConfiguration& wished,
              std::vector<ConfigurationChanges>& all, Problems& problems) {
    const MachineConfiguration& configuration = configuration_named(machine, wished.name);
    const bool twice = std::any_of(all.begin(), all.end(),
                                   [&](const auto& each) { return each.configuration == &configuration; });
    if (twice)
        throw Failure{invalid, "the configuration \"" + visible(wished.name) + "\" is given twice"};
    check_origin(configuration, wished, problems);
    all.push_back(Planning(configuration, problems).plan(wished.values));
    all.back().restart_is_pending = restart_is_pending(configuration.service());
}

} // namespace

bool ConfigurationChanges::differ() const {
    return std::any_of(changes.begin(), changes.end(), [](const Change& each) { return each.differs; });
}

std::vector<ConfigurationChanges> plan_changes(const Machine& machine, const State& state) {
    std::vector<ConfigurationChanges> all;
    Problems problems;
    for (const WishedConfiguration& wished : state) {
        try {
            plan_one(machine, wished, all, problems);
        } catch (const Failure& failure) {
            if (failure.code != invalid)
                throw;
            problems.add(failure.text);
        }
    }
    problems.refuse_if_any();
    return all;
}

bool is_in_sync(const ConfigurationChanges& changes) {
    return !changes.differ() && !changes.restart_is_pending;
}

bool all_in_sync(const std::vector<ConfigurationChanges>& all) {
    return std::all_of(all.begin(), all.end(), is_in_sync);
}

bool any_differ(const std::vector<ConfigurationChanges>& all) {
    return std::any_of(all.begin(), all.end(), [](const auto& each) { return each.differ(); });
}

} // namespace ctl
