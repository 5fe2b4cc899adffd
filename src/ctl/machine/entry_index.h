#pragma once
#include "ctl/machine/machine.h"
#include "specfile/name_table.h"

#include <string>

namespace ctl {

/// Finds the entries of one configuration by what a caller calls them. Texts are in the machine's code page.
class EntryIndex {
public:
    explicit EntryIndex(const MachineConfiguration& configuration);

    /// The place, in the spec file's order, of the entry with this value name in any letter case, or else of
    /// the only one with this title. Throws a text for a name that is unknown, stands for several entries or
    /// for one without a value.
    std::size_t find(const std::string& name) const;

private:
    [[noreturn]] void refuse(const std::string& name) const;

    const std::vector<SpecEntry>& entries_;
    NameTable value_names_{true};
    NameTable titles_{false};
    NameTable repeated_titles_{false};
};

} // namespace ctl
