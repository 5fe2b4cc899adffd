#pragma once
#include "ctl/machine/machine_key.h"

#include <optional>
#include <string>

namespace ctl {

/// A value as it is, whatever its length; texts in UTF-16, also of characters that the machine's code page
/// lacks.
struct ExactValue {
    DWORD type;
    std::string octets;
};

/// Nothing when the value is not there.
std::optional<ExactValue> read_exactly(const MachineKey& key, const std::string& name);

/// Returns what the system answered.
LSTATUS write_exactly(const MachineKey& key, const std::string& name, const ExactValue& value);

} // namespace ctl
