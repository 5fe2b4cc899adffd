#pragma once
/// The keys and values behind the registry calls.
#include "substitute/registry/registry.h"
#include "substitute/text.h"

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace substitute {

struct RegistryValue {
    std::string name; // as it was first written
    DWORD type = 0;
    std::string data;
};

/// A key's values in the order in which they were first written; found by name or by position at once.
class RegistryValues {
public:
    const RegistryValue* find(const std::string& name) const;
    void set(const std::string& name, DWORD type, std::string data);
    bool erase(const std::string& name);
    const std::vector<RegistryValue>& all() const { return values_; }

private:
    std::vector<RegistryValue> values_;
    std::unordered_map<std::string, std::size_t> positions_; // by folded name
};

struct RegistryKey {
    std::string name;
    std::map<std::string, std::shared_ptr<RegistryKey>> subkeys; // by folded name
    RegistryValues values;
    bool deleted = false; // handles may outlive the key
    bool denied = false;
};

struct OpenKey {
    std::shared_ptr<RegistryKey> key;
    REGSAM access = 0;
};

/// The root's or open key's record; null for a handle that is neither.
const OpenKey* find_open_key(HKEY handle);
HKEY add_open_key(const std::shared_ptr<RegistryKey>& key, REGSAM access);
bool remove_open_key(HKEY handle);
bool is_root(HKEY handle);

/// A path cut into names. Backslashes at the end or in a row count as one; one at the start is an error.
LSTATUS split_path(LPCSTR path, std::vector<std::string>& names);
/// Marks the key and everything below it as deleted.
void mark_deleted(RegistryKey& key);

} // namespace substitute
