#pragma once
/// What can be said of a state by its spec file alone, before a machine is looked at.
#include "ctl/change/state_file.h"
#include "ctl/machine/entry_index.h"

#include <string>
#include <vector>

namespace ctl {

/// What is wrong with a state, told all at once.
class Problems {
public:
    void add(const std::string& line);

    /// Throws Failure of the code `invalid` that says that nothing was written, if there was a problem.
    void refuse_if_any() const;

private:
    std::string text_;
    std::size_t count_ = 0;
};

/// Finds the entries that a state's values are meant for.
class DesiredEntries {
public:
    DesiredEntries(const SpecModel& spec, unsigned code_page)
        : index_(spec, code_page), code_page_(code_page), is_given_(spec.entries.size()) {}

    /// The entry's place in the spec file's order. Throws a text for a name that is unknown, and for an entry
    /// that another value was meant for.
    std::size_t place_of(const WishedValue& wished);

private:
    EntryIndex index_;
    unsigned code_page_;
    std::vector<bool> is_given_;
};

/// The text that a value wishes for, in the code page. Throws a text when it cannot be one for this entry.
std::string desired_text(const WishedValue& wished, const Declaration& declaration, unsigned code_page);

/// Says that `text`, in the code page, is refused because of `problem`.
std::string refusal(const std::string& text, const std::string& problem, unsigned code_page);

/// What a state says of its origin and is otherwise here, half a line each. What it does not say is not
/// compared.
std::vector<std::string> contradictions(const Guards& said, const Guards& found);

/// What is wrong with a state's values for every machine that has this spec file: a line each, with the name
/// in front.
std::vector<std::string> state_problems(const WishedConfiguration& wished, const SpecModel& spec,
                                        unsigned code_page);

} // namespace ctl
