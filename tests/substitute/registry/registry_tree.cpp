#include "substitute/registry/registry_tree.h"

#include "substitute/calls.h"
#include "substitute/control/registry.h"
#include "substitute/kernel/kernel.h"

#include <stdexcept>

namespace substitute {
namespace {

struct Handles {
    std::map<HKEY, OpenKey> roots;
    std::map<HKEY, OpenKey> open;
    std::intptr_t last = 0;

    Handles() {
        for (const HKEY root : {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_USERS})
            roots[root] = {std::make_shared<RegistryKey>(), KEY_ALL_ACCESS};
        // Every Windows has these two keys; tests must not rely on others.
        for (const std::string name : {"SOFTWARE", "HARDWARE"}) {
            const auto key = std::make_shared<RegistryKey>();
            key->name = name;
            roots[HKEY_LOCAL_MACHINE].key->subkeys[folded(name)] = key;
        }
    }
};

Handles& handles() {
    static Handles instance;
    return instance;
}

const ResetHook reset_hook([] { handles() = Handles{}; });

} // namespace

const RegistryValue* RegistryValues::find(const std::string& name) const {
    const auto found = positions_.find(folded(name));
    return found == positions_.end() ? nullptr : &values_[found->second];
}

void RegistryValues::set(const std::string& name, DWORD type, std::string data) {
    const auto [position, is_new] = positions_.try_emplace(folded(name), values_.size());
    if (is_new)
        values_.push_back({name, 0, {}});
    RegistryValue& value = values_[position->second];
    value.type = type;
    value.data = std::move(data);
}

bool RegistryValues::erase(const std::string& name) {
    const auto found = positions_.find(folded(name));
    if (found == positions_.end())
        return false;
    const std::size_t gone = found->second;
    positions_.erase(found);
    values_.erase(values_.begin() + static_cast<std::ptrdiff_t>(gone));
    for (auto& [_, position] : positions_) {
        if (position > gone)
            --position;
    }
    return true;
}

bool is_root(HKEY handle) { return handles().roots.contains(handle); }

const OpenKey* find_open_key(HKEY handle) {
    const auto& known = is_root(handle) ? handles().roots : handles().open;
    const auto found = known.find(handle);
    return found == known.end() ? nullptr : &found->second;
}

HKEY add_open_key(const std::shared_ptr<RegistryKey>& key, REGSAM access) {
    const auto handle = reinterpret_cast<HKEY>(handles().last += 4);
    handles().open[handle] = {key, access};
    return handle;
}

bool remove_open_key(HKEY handle) { return handles().open.erase(handle) != 0; }

LSTATUS split_path(LPCSTR path, std::vector<std::string>& names) {
    const std::string text = path == nullptr ? "" : path;
    if (text.starts_with('\\'))
        return ERROR_BAD_PATHNAME;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\\', start), text.size());
        if (end > start)
            names.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return ERROR_SUCCESS;
}

void mark_deleted(RegistryKey& key) {
    key.deleted = true;
    for (const auto& [_, subkey] : key.subkeys)
        mark_deleted(*subkey);
}

int open_keys() { return static_cast<int>(handles().open.size()); }

void deny_key(HKEY root, const std::string& path) {
    HKEY handle = nullptr;
    if (RegOpenKeyExA(root, path.c_str(), 0, KEY_QUERY_VALUE, &handle) != ERROR_SUCCESS)
        throw std::invalid_argument("deny_key: no key " + path);
    find_open_key(handle)->key->denied = true;
    RegCloseKey(handle);
}

} // namespace substitute
