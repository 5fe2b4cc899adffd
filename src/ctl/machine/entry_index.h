#pragma once
#include "ctl/io/registry_names.h"
#include "specfile/spec_model.h"

#include <string>

namespace ctl {

/// Finds the entries of one configuration by what a caller calls them. Texts are in the code page of the spec
/// file.
class EntryIndex {
public:
    EntryIndex(const SpecModel& spec, unsigned code_page);

    /// The place, in the spec file's order, of the entry with this value name in any letter case, or else of
    /// the only one with this title. Throws a text for a name that is unknown, stands for several entries or
    /// for one without a value.
    std::size_t find(const std::string& name) const;

private:
    [[noreturn]] void refuse(const std::string& name) const;

    const std::vector<SpecEntry>& entries_;
    RegistryNames value_names_;
    NameTable titles_{false};
    NameTable repeated_titles_{false};
};

} // namespace ctl
