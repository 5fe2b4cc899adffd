#include "substitute/registry/registry.h"

#include "substitute/calls.h"
#include "substitute/kernel/kernel.h"
#include "substitute/registry/registry_tree.h"

#include <algorithm>

using substitute::folded;
using substitute::OpenKey;
using substitute::RegistryKey;

namespace {

struct Place {
    std::shared_ptr<RegistryKey> parent; // null when the path is empty
    std::shared_ptr<RegistryKey> key;    // null when there is no such key
    std::string name;                    // the last name of the path
};

/// Walks from `parent` along `path`; ERROR_FILE_NOT_FOUND when a key on the way is missing. With `create`
/// those on the way are made, the last one is not.
LSTATUS walk(HKEY parent, LPCSTR path, bool create, Place& place) {
    std::vector<std::string> names;
    if (const LSTATUS status = substitute::split_path(path, names); status != ERROR_SUCCESS)
        return status;
    const OpenKey* const start = substitute::find_open_key(parent);
    if (start == nullptr)
        return ERROR_INVALID_HANDLE;
    if (start->key->deleted)
        return ERROR_KEY_DELETED;
    place.key = start->key;
    for (const std::string& name : names) {
        if (place.key == nullptr && !create)
            return ERROR_FILE_NOT_FOUND;
        if (place.key == nullptr) {
            place.key = std::make_shared<RegistryKey>();
            place.key->name = place.name;
            place.parent->subkeys[folded(place.name)] = place.key;
        }
        place.parent = place.key;
        place.name = name;
        const auto found = place.parent->subkeys.find(folded(name));
        place.key = found == place.parent->subkeys.end() ? nullptr : found->second;
    }
    return ERROR_SUCCESS;
}

bool is_empty(LPCSTR path) { return path == nullptr || *path == '\0'; }

LSTATUS open_at(const Place& place, HKEY parent, LPCSTR path, REGSAM access, HKEY* result) {
    if (place.key->denied)
        return ERROR_ACCESS_DENIED;
    // A root opened by the empty path is itself, as in the system.
    *result =
        is_empty(path) && substitute::is_root(parent) ? parent : substitute::add_open_key(place.key, access);
    return ERROR_SUCCESS;
}

LSTATUS remove_key(HKEY parent, LPCSTR path, bool with_subkeys) {
    Place place;
    if (const LSTATUS status = walk(parent, path, false, place); status != ERROR_SUCCESS)
        return status;
    if (place.key == nullptr)
        return ERROR_FILE_NOT_FOUND;
    if (place.key->denied || place.parent == nullptr || (!with_subkeys && !place.key->subkeys.empty()))
        return ERROR_ACCESS_DENIED;
    substitute::mark_deleted(*place.key);
    place.parent->subkeys.erase(folded(place.name));
    return ERROR_SUCCESS;
}

} // namespace

LSTATUS RegOpenKeyExA(HKEY parent, LPCSTR path, DWORD, REGSAM access, HKEY* result) {
    *result = nullptr;
    if (const DWORD code = substitute::failing("RegOpenKeyExA", ERROR_ACCESS_DENIED))
        return static_cast<LSTATUS>(code);
    Place place;
    if (const LSTATUS status = walk(parent, path, false, place); status != ERROR_SUCCESS)
        return status;
    return place.key == nullptr ? LSTATUS{ERROR_FILE_NOT_FOUND}
                                : open_at(place, parent, path, access, result);
}

LSTATUS RegCreateKeyExA(HKEY parent, LPCSTR path, DWORD, LPSTR, DWORD, REGSAM access, SECURITY_ATTRIBUTES*,
                        HKEY* result, LPDWORD) {
    *result = nullptr;
    if (const DWORD code = substitute::failing("RegCreateKeyExA", ERROR_ACCESS_DENIED))
        return static_cast<LSTATUS>(code);
    Place place;
    if (const LSTATUS status = walk(parent, path, true, place); status != ERROR_SUCCESS)
        return status;
    if (place.key == nullptr) {
        place.key = std::make_shared<RegistryKey>();
        place.key->name = place.name;
        place.parent->subkeys[folded(place.name)] = place.key;
    }
    return open_at(place, parent, path, access, result);
}

LSTATUS RegCloseKey(HKEY key) {
    if (const DWORD code = substitute::failing("RegCloseKey", ERROR_INVALID_HANDLE))
        return static_cast<LSTATUS>(code);
    return substitute::is_root(key) || substitute::remove_open_key(key) ? ERROR_SUCCESS
                                                                        : LSTATUS{ERROR_INVALID_HANDLE};
}

LSTATUS RegDeleteKeyA(HKEY parent, LPCSTR path) {
    if (const DWORD code = substitute::failing("RegDeleteKeyA", ERROR_ACCESS_DENIED))
        return static_cast<LSTATUS>(code);
    return path == nullptr ? LSTATUS{ERROR_INVALID_PARAMETER} : remove_key(parent, path, false);
}

LSTATUS RegDeleteTreeA(HKEY parent, LPCSTR path) {
    if (const DWORD code = substitute::failing("RegDeleteTreeA", ERROR_ACCESS_DENIED))
        return static_cast<LSTATUS>(code);
    return path == nullptr ? LSTATUS{ERROR_INVALID_PARAMETER} : remove_key(parent, path, true);
}
