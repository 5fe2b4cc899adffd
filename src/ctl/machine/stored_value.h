#pragma once
/// A value as the registry holds it. The agent reads texts; a value of another type is not what it looks for,
/// whatever its octets are.
#include "ctl/io/json.h"
#include "ctl/machine/exact_value.h"
#include "ctl/machine/machine_key.h"

#include <optional>
#include <string>

namespace ctl {

struct StoredValue {
    bool is_there = false;
    DWORD type = 0;
    /// Longer than the tool reads: it takes such a value for an empty one.
    bool is_too_long = false;
    /// As the tool reads it, in the machine's code page.
    std::string text;
    /// Of a value that is no text, or one that UTF-8 cannot say: what the registry holds, texts in UTF-16.
    std::optional<std::string> octets;

    /// Whether it is just this text, of the type that the tool writes.
    bool holds(const std::string& wanted) const {
        return is_there && type == REG_SZ && !is_too_long && !octets && text == wanted;
    }
};

StoredValue look_up(const MachineKey& key, const std::string& name);

/// As look_up would find it.
StoredValue stored_as(const ExactValue& exact);

/// For people: the text, or a number, or octets, with the type of all but plain texts; or why there is none.
std::string shown(const StoredValue& value);

/// For programs, and for `apply` to read: a text as it is; null for a value that is not there; an object for
/// all others, with the type.
Json json_of(const StoredValue& value);

} // namespace ctl
