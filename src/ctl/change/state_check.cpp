#include "ctl/change/state_check.h"

#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/registry_names.h"
#include "ctl/io/visible.h"
#include "specfile/value_text.h"

#include <tuple>

namespace ctl {
namespace {

/// Of a longer text its beginning says enough.
constexpr std::size_t most_quoted = 80;

/// More lines than these help nobody.
constexpr std::size_t most_told = 20;

/// JSON's numbers and booleans stand for texts of one form only.
void refuse_other_form(const WishedValue& wished, const EntryKind& kind) {
    const bool is_number = wished.written == JsonTree::Kind::whole_number;
    const bool is_flag = wished.written == JsonTree::Kind::boolean;
    if ((!is_number && !is_flag) || (is_number && kind.form == ValueForm::integer) ||
        (is_flag && kind.form == ValueForm::flag))
        return;
    const std::string found = (is_number ? "the number " : "the boolean ") + *wished.text;
    const char* const expected = kind.form == ValueForm::flag      ? "true or false"
                                 : kind.form == ValueForm::integer ? "a whole number"
                                                                   : "a text in quotes";
    throw std::string("expected ") + expected + " for the kind " + std::string(kind.type) + ", found " +
        found;
}

void check_value(const WishedValue& wished, const Declaration& declaration, unsigned code_page) {
    if (!wished.text || !wished.type.empty())
        return;
    const std::string text = desired_text(wished, declaration, code_page);
    if (const auto problem = value_problem(declaration, text))
        throw refusal(text, *problem, code_page);
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
    throw Failure{invalid, "nothing was written:" + text_ + more};
}

std::size_t DesiredEntries::place_of(const WishedValue& wished) {
    const auto name = from_utf8(wished.name, code_page_);
    if (!name)
        throw std::string("unknown value; \"tavrinctl show\" lists them all");
    const std::size_t place = index_.find(*name);
    if (is_given_[place])
        throw std::string("the value is given twice");
    is_given_[place] = true;
    return place;
}

std::string desired_text(const WishedValue& wished, const Declaration& declaration, unsigned code_page) {
    refuse_other_form(wished, *declaration.kind);
    const auto text = from_utf8(*wished.text, code_page);
    if (!text)
        throw "the text does not fit the machine's code page " + std::to_string(code_page);
    return *text;
}

std::string refusal(const std::string& text, const std::string& problem, unsigned code_page) {
    return to_utf8("\"" + visible(text.substr(0, most_quoted)) + "\" is invalid: " + problem, code_page);
}

std::vector<std::string> contradictions(const Guards& said, const Guards& found) {
    const std::tuple<const char*, const std::string&, const std::string&> pairs[] = {
        {"the key", said.key, found.key},
        {"the service", said.service, found.service},
        {"the SHA-256 of the spec file", said.sha256, found.sha256}};
    std::vector<std::string> all;
    for (const auto& [what, wanted, here] : pairs) {
        if (!wanted.empty() && !is_same_registry_name(wanted, here))
            all.push_back(std::string(what) + " is \"" + visible(here) + "\" here, not \"" + visible(wanted) +
                          "\"");
    }
    return all;
}

std::vector<std::string> state_problems(const WishedConfiguration& wished, const SpecModel& spec,
                                        unsigned code_page) {
    DesiredEntries entries(spec, code_page);
    std::vector<std::string> problems;
    for (const WishedValue& each : wished.values) {
        try {
            check_value(each, spec.entries[entries.place_of(each)].declaration, code_page);
        } catch (const std::string& problem) {
            problems.push_back(visible(each.name) + ": " + problem);
        }
    }
    return problems;
}

} // namespace ctl
