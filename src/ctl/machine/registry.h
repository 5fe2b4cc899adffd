#pragma once
/// Keys and values of this machine's registry. The agent reads texts: a value of another type is not what the
/// agent looks for, whatever its octets are. Paths and names are in the machine's code page.
#include "ctl/io/json.h"
#include "ctl/io/reg_file.h"
#include "store/registry_key.h"

#include <optional>
#include <string>

namespace ctl {

/// An open key below HKEY_LOCAL_MACHINE.
class LocalKey : public RegistryKeyHandle {
public:
    /// Throws Failure: `access_denied`, `invalid` with the text `if_missing` for a key that does not exist,
    /// and `failed` for everything else.
    LocalKey(const std::string& path, REGSAM access, const std::string& if_missing = {});
};

struct StoredValue {
    bool is_there = false;
    DWORD type = 0;
    /// Longer than the window reads, which takes such a value for an empty one.
    bool is_too_long = false;
    /// As the window reads it, in the machine's code page.
    std::string text;
    /// The octets in the registry, texts in UTF-16, if the value is not a text or UTF-8 cannot express it.
    std::optional<std::string> octets;

    /// Whether it is exactly this text, of the type that the window writes.
    bool holds(const std::string& wanted) const {
        return is_there && type == REG_SZ && !is_too_long && !octets && text == wanted;
    }
};

StoredValue read_value(const LocalKey& key, const std::string& name);
/// The result that read_value would return for this value.
StoredValue as_stored(const RegistryValue& exact);

/// The value as it is, or nothing if it does not exist.
std::optional<RegistryValue> read_exactly(const LocalKey& key, const std::string& name);
/// Returns the system's return code.
LSTATUS write_exactly(const LocalKey& key, const std::string& name, const RegistryValue& value);

/// For people: the text, a number or octets, with the type unless it is REG_SZ; or the reason why there is
/// none.
std::string shown(const StoredValue& value);

/// For programs, and for `apply` to read: the text of a REG_SZ; null for a value that does not exist; an
/// object with the type for everything else.
Json json_of(const StoredValue& value);

} // namespace ctl
