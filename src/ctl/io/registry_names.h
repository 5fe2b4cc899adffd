#pragma once
#include "specfile/name_table.h"

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

namespace ctl {

/// Whether both (UTF-8) are one name for the registry, which ignores the case of all letters, not only of
/// ASCII.
bool is_same_registry_name(std::string_view one, std::string_view other);

/// A table of the registry's names in a code page. The names must outlive it.
class RegistryNames {
public:
    explicit RegistryNames(unsigned code_page, std::size_t expected = 0)
        : code_page_(code_page), names_(true, expected) {}

    /// Works like NameTable.
    std::size_t add(std::string_view name, std::size_t line);
    std::size_t find(std::string_view name) const;

private:
    unsigned code_page_;
    NameTable names_;
    /// Names with letters beyond ASCII, folded to one letter case.
    std::deque<std::string> folded_;
};

} // namespace ctl
