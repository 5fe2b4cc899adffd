#include "ctl/machine/entry_index.h"

#include "specfile/name_table.h"

#include <algorithm>

namespace ctl {
namespace {

bool has_value(const Declaration& declaration) { return declaration.kind->form != ValueForm::none; }

/// In the place of a line, which is never 0, stands the entry's number, counted from 1.
void note(NameTable& names, std::string_view name, std::size_t place) { names.add(name, place + 1); }

} // namespace

EntryIndex::EntryIndex(const MachineConfiguration& configuration) : entries_(configuration.spec.entries) {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        const Declaration& declaration = entries_[i].declaration;
        if (has_value(declaration))
            note(value_names_, declaration.value_name.text, i);
        if (titles_.add(declaration.title.text, i + 1) != 0)
            note(repeated_titles_, declaration.title.text, i);
    }
}

std::size_t EntryIndex::find(const std::string& name) const {
    if (const std::size_t place = value_names_.find(name))
        return place - 1;
    const std::size_t titled = titles_.find(name);
    if (titled == 0 || repeated_titles_.find(name) != 0 || !has_value(entries_[titled - 1].declaration))
        refuse(name);
    // Of several with one value the first stands for all.
    return value_names_.find(entries_[titled - 1].declaration.value_name.text) - 1;
}

void EntryIndex::refuse(const std::string& name) const {
    if (repeated_titles_.find(name) != 0)
        throw std::string("several entries have this title; name one by its value name");
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const SpecEntry& each) {
        return each.declaration.title.text == name || same_name(each.declaration.value_name.text, name);
    });
    if (found == entries_.end())
        throw std::string("there is no such value");
    throw "this is a " + std::string(found->declaration.kind->type) +
        ", which has no value to set; the window does what it is for";
}

} // namespace ctl
