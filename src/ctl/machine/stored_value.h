#pragma once
/// A value as the registry holds it. The agent reads texts; a value of another type is not what it looks for,
/// whatever its octets are.
#include "ctl/machine/machine_key.h"

#include <optional>
#include <string>

namespace ctl {

struct StoredValue {
    bool is_there = false;
    DWORD type = 0;
    /// Longer than the tool reads: it takes such a value for an empty one.
    bool is_too_long = false;
    /// As the tool reads it, in the machine's code page; a number of 32 or 64 bits in decimal.
    std::string text;

    bool is_text() const { return type == REG_SZ || type == REG_EXPAND_SZ; }
    /// Whether it is just this text.
    bool holds(const std::string& wanted) const {
        return is_there && is_text() && !is_too_long && text == wanted;
    }
};

StoredValue look_up(const MachineKey& key, const std::string& name);

/// The type's name in the registry: "REG_DWORD".
std::string type_name(DWORD type);

} // namespace ctl
