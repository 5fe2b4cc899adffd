#pragma once
#include "ctl/machine/exact_value.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ctl {

/// A value of a backup. Key, below HKEY_LOCAL_MACHINE, and name are UTF-8.
struct SavedValue {
    std::string key;
    std::string name;
    /// Nothing when the value was not there.
    std::optional<ExactValue> value;
};

/// The values in a backup that set or apply wrote; `octets` are those of the whole file. Throws Failure of
/// the code `invalid` for all else that a .reg file can hold, and names the line.
std::vector<SavedValue> read_backup(std::string_view octets);

} // namespace ctl
