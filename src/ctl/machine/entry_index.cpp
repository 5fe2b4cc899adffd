#include "ctl/machine/entry_index.h"

#include "base/text.h"

#include <algorithm>

namespace ctl {

/// In the place of a line, which is never 0, stands the entry's number, counted from 1.
EntryIndex::EntryIndex(const SpecModel& spec, unsigned code_page)
    : entries_(spec.entries), value_names_(code_page) {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        const Declaration& declaration = entries_[i].declaration;
        if (declaration.has_value())
            value_names_.add(declaration.value_name.text, i + 1);
        if (titles_.add(declaration.title.text, i + 1) != 0)
            repeated_titles_.add(declaration.title.text, i + 1);
    }
}

std::size_t EntryIndex::find(const std::string& name) const {
    if (const std::size_t place = value_names_.find(name))
        return place - 1;
    const std::size_t titled = titles_.find(name);
    if (titled == 0 || repeated_titles_.find(name) != 0 || !entries_[titled - 1].declaration.has_value())
        refuse(name);
    // Of several with one value the first stands for all.
    return value_names_.find(entries_[titled - 1].declaration.value_name.text) - 1;
}

void EntryIndex::refuse(const std::string& name) const {
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

} // namespace ctl
