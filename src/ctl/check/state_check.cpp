#include "ctl/check/state_check.h"

#include "base/text.h"
#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/printable.h"
#include "specfile/value_text.h"

#include <algorithm>
#include <set>
#include <tuple>

namespace ctl {
namespace {

/// The most bytes of a text that a message quotes.
constexpr std::size_t most_quoted = 80;

/// The most problems that are listed; the others are only counted.
constexpr std::size_t most_told = 20;

/// Refuses a JSON number or boolean for a kind whose values have another form.
void refuse_other_form(const DesiredValue& desired, const EntryKind& kind) {
    const bool is_number = desired.written == JsonTree::Kind::whole_number;
    const bool is_flag = desired.written == JsonTree::Kind::boolean;
    if ((!is_number && !is_flag) || (is_number && kind.form == ValueForm::integer) ||
        (is_flag && kind.form == ValueForm::flag))
        return;
    const std::string found = (is_number ? "the number " : "the boolean ") + *desired.text;
    const char* const expected = kind.form == ValueForm::flag      ? "true or false"
                                 : kind.form == ValueForm::integer ? "a whole number"
                                                                   : "a text in quotes";
    throw std::string("expected ") + expected + " for the kind " + std::string(kind.type) + ", found " +
        found;
}

void check_value(const DesiredValue& desired, const Declaration& declaration, unsigned code_page) {
    if (!desired.text || !desired.type.empty())
        return;
    const std::string text = desired_text(desired, declaration, code_page);
    if (const auto problem = value_problem(declaration, text))
        throw refusal(text, *problem, code_page);
}

/// The registry of the machine gives an old file its name, so only the key tells to which configuration it
/// belongs.
bool is_meant(const DesiredConfiguration& desired, const SpecModel& spec, unsigned code_page) {
    if (!spec.is_old)
        return is_same_registry_name(to_utf8(spec.name.text, code_page), desired.name);
    return !desired.key.empty() &&
           is_same_registry_name(to_utf8(spec.registry_path.text, code_page), desired.key);
}

class StateFindings {
public:
    StateFindings(const std::vector<CheckedSpec>& specs, unsigned code_page)
        : specs_(specs), code_page_(code_page) {}

    void take(const DesiredConfiguration& desired);
    std::vector<Finding> take_all() { return std::move(findings_); }

private:
    void take(const DesiredConfiguration& desired, const CheckedSpec& found);
    void take(const DesiredValue& desired, const SpecModel& spec, DesiredEntries& entries,
              const std::string& name);
    void tell(Severity severity, const std::string& text) { findings_.push_back({1, severity, text}); }

    const std::vector<CheckedSpec>& specs_;
    unsigned code_page_;
    std::set<const CheckedSpec*> taken_;
    std::vector<Finding> findings_;
};

void StateFindings::take(const DesiredConfiguration& desired) {
    const CheckedSpec* const found = find_spec(desired, specs_, code_page_);
    const std::string name = printable(desired.name);
    if (found == nullptr) {
        tell(Severity::error, "none of the spec files has the configuration \"" + name + "\"");
    } else if (!taken_.insert(found).second) {
        tell(Severity::error, "the configuration \"" + name + "\" is given twice");
    } else {
        take(desired, *found);
    }
}

void StateFindings::take(const DesiredConfiguration& desired, const CheckedSpec& found) {
    const std::string name = printable(desired.name) + ": ";
    const Guards facts{to_utf8(found.spec.registry_path.text, code_page_),
                       to_utf8(found.spec.service_name.text, code_page_), found.sha256};
    const std::string broken = name + "a guard of the state does not hold: ";
    for (const std::string& each : contradictions(desired.guards, facts))
        tell(Severity::error, broken + each);
    for (const std::string& each : contradictions({desired.key, desired.service, {}}, facts))
        tell(Severity::warning, name + each);
    DesiredEntries entries(found.spec, code_page_);
    for (const DesiredValue& each : desired.values)
        take(each, found.spec, entries, name + printable(each.name) + ": ");
}

void StateFindings::take(const DesiredValue& desired, const SpecModel& spec, DesiredEntries& entries,
                         const std::string& name) {
    try {
        check_value(desired, spec.entries[entries.place_of(desired)].declaration, code_page_);
        if (!desired.type.empty()) {
            tell(Severity::warning, name + "a value of the type " + printable(desired.type) +
                                        " is accepted only on machines that already store it");
        }
    } catch (const std::string& problem) {
        tell(Severity::error, name + problem);
    }
}

} // namespace

void Problems::add(const std::string& line) {
    if (++count_ <= most_told)
        text_ += "\n  " + line;
}

void Problems::refuse_if_any() const {
    if (count_ == 0)
        return;
    const std::string more =
        count_ > most_told ? "\n  and " + std::to_string(count_ - most_told) + " more" : "";
    throw Failure{ExitCode::invalid, "nothing was written:" + text_ + more};
}

DesiredEntries::DesiredEntries(const SpecModel& spec, unsigned code_page)
    : entries_(spec.entries), code_page_(code_page), value_names_(code_page), is_given_(spec.entries.size()) {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        const Declaration& declaration = entries_[i].declaration;
        if (declaration.has_value())
            value_names_.add(declaration.value_name.text, i + 1);
        if (titles_.add(declaration.title.text, i + 1) != 0)
            repeated_titles_.add(declaration.title.text, i + 1);
    }
}

std::size_t DesiredEntries::place_of(const DesiredValue& desired) {
    const auto name = from_utf8(desired.name, code_page_);
    if (!name)
        throw std::string("unknown value; \"tavrinctl show\" lists them all");
    const std::size_t place = find(*name);
    if (is_given_[place])
        throw std::string("the value is given twice");
    is_given_[place] = true;
    return place;
}

std::size_t DesiredEntries::find(const std::string& name) const {
    if (const std::size_t number = value_names_.find(name))
        return number - 1;
    const std::size_t titled = titles_.find(name);
    if (titled == 0 || repeated_titles_.find(name) != 0 || !entries_[titled - 1].declaration.has_value())
        refuse(name);
    // Several entries may share one value; the first one represents them all.
    return value_names_.find(entries_[titled - 1].declaration.value_name.text) - 1;
}

void DesiredEntries::refuse(const std::string& name) const {
    if (repeated_titles_.find(name) != 0)
        throw std::string("several entries have this title; use a value name");
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const SpecEntry& each) {
        return each.declaration.title.text == name ||
               same_ignoring_case(each.declaration.value_name.text, name);
    });
    if (found == entries_.end())
        throw std::string("unknown value; \"tavrinctl show\" lists them all");
    throw "this is a " + std::string(found->declaration.kind->type) +
        ", which has no value that could be set; use the window";
}

std::string desired_text(const DesiredValue& desired, const Declaration& declaration, unsigned code_page) {
    refuse_other_form(desired, *declaration.kind);
    const auto text = from_utf8(*desired.text, code_page);
    if (!text)
        throw "the text does not fit the machine's code page " + std::to_string(code_page);
    return *text;
}

std::string refusal(const std::string& text, const std::string& problem, unsigned code_page) {
    return to_utf8("\"" + printable(text.substr(0, most_quoted)) + "\" is invalid: " + problem, code_page);
}

std::vector<std::string> contradictions(const Guards& said, const Guards& found) {
    const std::tuple<const char*, const std::string&, const std::string&> pairs[] = {
        {"the key", said.key, found.key},
        {"the service", said.service, found.service},
        {"the SHA-256 of the spec file", said.sha256, found.sha256}};
    std::vector<std::string> all;
    for (const auto& [what, wanted, here] : pairs) {
        if (!wanted.empty() && !is_same_registry_name(wanted, here)) {
            all.push_back(std::string(what) + " is \"" + printable(here) + "\" here, not \"" +
                          printable(wanted) + "\"");
        }
    }
    return all;
}

const CheckedSpec* find_spec(const DesiredConfiguration& desired, const std::vector<CheckedSpec>& specs,
                             unsigned code_page) {
    const auto found = std::find_if(specs.begin(), specs.end(), [&](const CheckedSpec& each) {
        return is_meant(desired, each.spec, code_page);
    });
    return found == specs.end() ? nullptr : &*found;
}

std::vector<Finding> check_state(const State& state, const std::vector<CheckedSpec>& specs,
                                 unsigned code_page) {
    StateFindings findings(specs, code_page);
    for (const DesiredConfiguration& each : state)
        findings.take(each);
    return findings.take_all();
}

} // namespace ctl
