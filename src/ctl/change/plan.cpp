#include "ctl/change/plan.h"

#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/visible.h"
#include "ctl/machine/entry_index.h"
#include "specfile/value_text.h"
#include "store/serial_ports.h"

#include <algorithm>
#include <utility>

namespace ctl {
namespace {

/// All that is wrong is told at once.
class Problems {
public:
    void add(const MachineConfiguration& configuration, const std::string& name, const std::string& words) {
        add(to_utf8(configuration.name) + ": " + visible(name) + ": " + words);
    }
    void add(const std::string& line) { text_ += "\n  " + line; }

    void refuse_if_any() const {
        if (!text_.empty())
            throw Failure{invalid, "nothing was written:" + text_};
    }

private:
    std::string text_;
};

bool is_meant_for(const WishedValue& wished, ValueForm form) {
    switch (wished.written) {
    case JsonTree::Kind::whole_number: return form == ValueForm::integer;
    case JsonTree::Kind::boolean: return form == ValueForm::flag;
    default: return true;
    }
}

/// The text in the machine's code page. Throws a text when it cannot be what is wished.
std::string own_text(const WishedValue& wished, const Declaration& declaration) {
    if (!is_meant_for(wished, declaration.kind->form))
        throw "a text is expected for the kind " + std::string(declaration.kind->type);
    const auto text = from_utf8(*wished.text);
    if (!text)
        throw "the text does not fit the machine's code page " + std::to_string(machine_code_page());
    return *text;
}

/// Which ports there are the machine knows, not the spec file. One that is still to be plugged in may be
/// named as the system will name it.
std::optional<std::string> port_problem(const std::string& text) {
    const bool is_numbered = text.starts_with("COM") && text.size() > 3 && text[3] != '0' &&
                             text.find_first_not_of("0123456789", 3) == std::string::npos;
    const std::vector<std::string> ports = serial_ports();
    if (text.empty() || is_numbered || std::find(ports.begin(), ports.end(), text) != ports.end())
        return std::nullopt;
    return "no serial port";
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
        throw to_utf8("\"" + visible(text.substr(0, 80)) + "\" is refused: " + *problem);
    change.after = stored_by_page(declaration, text);
    change.differs = !change.before.holds(*change.after);
    return change;
}

Change change_for(const WishedValue& wished, const Declaration& declaration, const MachineKey& key) {
    StoredValue before = look_up(key, std::string(declaration.value_name.text));
    if (wished.text)
        return change_to(own_text(wished, declaration), declaration, std::move(before));
    const bool is_there = before.is_there;
    return {&declaration, std::move(before), std::nullopt, is_there};
}

class Planning {
public:
    Planning(const MachineConfiguration& configuration, Problems& problems)
        : configuration_(configuration), index_(configuration), problems_(problems),
          key_(configuration.key(), KEY_QUERY_VALUE), is_given_(configuration.spec.entries.size()) {}

    ConfigurationChanges plan(const std::vector<WishedValue>& values) {
        changes_.reserve(values.size());
        for (const WishedValue& each : values)
            take(each);
        ConfigurationChanges all{&configuration_, {}};
        all.changes.reserve(changes_.size());
        std::sort(places_.begin(), places_.end());
        for (const auto& [place, number] : places_)
            all.changes.push_back(std::move(changes_[number]));
        return all;
    }

private:
    void take(const WishedValue& wished) {
        try {
            add(wished);
        } catch (const std::string& problem) {
            problems_.add(configuration_, wished.name, problem);
        }
    }

    void add(const WishedValue& wished) {
        const auto name = from_utf8(wished.name);
        if (!name)
            throw std::string("there is no such value");
        const std::size_t place = index_.find(*name);
        const Declaration& declaration = configuration_.spec.entries[place].declaration;
        if (is_given_[place])
            throw std::string("the value is given twice");
        changes_.push_back(change_for(wished, declaration, key_));
        places_.emplace_back(place, changes_.size() - 1);
        is_given_[place] = true;
    }

    const MachineConfiguration& configuration_;
    EntryIndex index_;
    Problems& problems_;
    MachineKey key_;
    std::vector<Change> changes_;
    /// Of each entry, whether it has a change.
    std::vector<bool> is_given_;
    /// The entries that have one, and which.
    std::vector<std::pair<std::size_t, std::size_t>> places_;
};

void plan_one(const Machine& machine, const WishedConfiguration& wished,
              std::vector<ConfigurationChanges>& all, Problems& problems) {
    const MachineConfiguration& configuration = configuration_named(machine, wished.name);
    const bool twice = std::any_of(all.begin(), all.end(),
                                   [&](const auto& each) { return each.configuration == &configuration; });
    if (twice)
        throw Failure{invalid, "the configuration \"" + visible(wished.name) + "\" is given twice"};
    all.push_back(Planning(configuration, problems).plan(wished.values));
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

bool any_differ(const std::vector<ConfigurationChanges>& all) {
    return std::any_of(all.begin(), all.end(), [](const auto& each) { return each.differ(); });
}

} // namespace ctl
