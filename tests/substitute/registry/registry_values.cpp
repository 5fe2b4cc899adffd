#include "substitute/calls.h"
#include "substitute/kernel/kernel.h"
#include "substitute/registry/registry.h"
#include "substitute/registry/registry_tree.h"

#include <algorithm>
#include <cstring>

using substitute::OpenKey;
using substitute::RegistryKey;
using substitute::RegistryValue;

namespace {

/// No valid name of a value is longer.
constexpr std::size_t longest_name = 16383;

LSTATUS usable(HKEY handle, REGSAM needed, RegistryKey*& key) {
    const OpenKey* const open = substitute::find_open_key(handle);
    if (open == nullptr)
        return ERROR_INVALID_HANDLE;
    if (open->key->deleted)
        return ERROR_KEY_DELETED;
    if ((open->access & needed) != needed)
        return ERROR_ACCESS_DENIED;
    key = open->key.get();
    return ERROR_SUCCESS;
}

std::string name_of(LPCSTR name) { return name == nullptr ? "" : name; }

bool is_string(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ; }

LSTATUS copy_data(const RegistryValue& value, LPDWORD type, LPBYTE data, LPDWORD size) {
    if (type != nullptr)
        *type = value.type;
    if (size == nullptr)
        return ERROR_SUCCESS;
    const DWORD room = *size;
    *size = static_cast<DWORD>(value.data.size());
    if (data == nullptr)
        return ERROR_SUCCESS;
    if (room < *size)
        return ERROR_MORE_DATA;
    std::copy(value.data.begin(), value.data.end(), data);
    // The system ends an unterminated string where there is room, without counting the zero.
    if (is_string(value.type) && room > *size && *size > 0 && value.data.back() != '\0')
        data[*size] = 0;
    return ERROR_SUCCESS;
}

LSTATUS copy_name(const std::string& name, LPSTR target, LPDWORD size) {
    if (*size <= name.size())
        return ERROR_MORE_DATA;
    std::memcpy(target, name.c_str(), name.size() + 1);
    *size = static_cast<DWORD>(name.size());
    return ERROR_SUCCESS;
}

void put(LPDWORD target, std::size_t value) {
    if (target != nullptr)
        *target = static_cast<DWORD>(value);
}

} // namespace

LSTATUS RegQueryValueExA(HKEY handle, LPCSTR name, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD size) {
    if (const DWORD code = substitute::failing("RegQueryValueExA", ERROR_ACCESS_DENIED))
        return static_cast<LSTATUS>(code);
    if (data != nullptr && size == nullptr)
        return ERROR_INVALID_PARAMETER;
    RegistryKey* key = nullptr;
    if (const LSTATUS status = usable(handle, KEY_QUERY_VALUE, key); status != ERROR_SUCCESS)
        return status;
    const RegistryValue* const value = key->values.find(name_of(name));
    return value == nullptr ? LSTATUS{ERROR_FILE_NOT_FOUND} : copy_data(*value, type, data, size);
}

LSTATUS RegSetValueExA(HKEY handle, LPCSTR name, DWORD, DWORD type, const BYTE* data, DWORD size) {
    if (const DWORD code = substitute::failing("RegSetValueExA", ERROR_ACCESS_DENIED))
        return static_cast<LSTATUS>(code);
    if (data == nullptr && size != 0)
        return ERROR_NOACCESS;
    RegistryKey* key = nullptr;
    if (const LSTATUS status = usable(handle, KEY_SET_VALUE, key); status != ERROR_SUCCESS)
        return status;
    if (name_of(name).size() > longest_name)
        return ERROR_INVALID_PARAMETER;
    // The system checks the byte after an unterminated string, and includes it if it is zero.
    if (is_string(type) && size != 0 && data[size - 1] != 0 && data[size] == 0)
        ++size;
    key->values.set(name_of(name), type, size == 0 ? std::string() : std::string(data, data + size));
    return ERROR_SUCCESS;
}

LSTATUS RegDeleteValueA(HKEY handle, LPCSTR name) {
    if (const DWORD code = substitute::failing("RegDeleteValueA", ERROR_ACCESS_DENIED))
        return static_cast<LSTATUS>(code);
    RegistryKey* key = nullptr;
    if (const LSTATUS status = usable(handle, KEY_SET_VALUE, key); status != ERROR_SUCCESS)
        return status;
    return key->values.erase(name_of(name)) ? ERROR_SUCCESS : LSTATUS{ERROR_FILE_NOT_FOUND};
}

LSTATUS RegQueryInfoKeyA(HKEY handle, LPSTR, LPDWORD, LPDWORD, LPDWORD subkeys, LPDWORD longest_subkey,
                         LPDWORD, LPDWORD values, LPDWORD longest_value_name, LPDWORD longest_data, LPDWORD,
                         FILETIME*) {
    if (const DWORD code = substitute::failing("RegQueryInfoKeyA", ERROR_ACCESS_DENIED))
        return static_cast<LSTATUS>(code);
    RegistryKey* key = nullptr;
    if (const LSTATUS status = usable(handle, KEY_QUERY_VALUE, key); status != ERROR_SUCCESS)
        return status;
    std::size_t subkey_name = 0;
    std::size_t value_name = 0;
    std::size_t value_data = 0;
    for (const auto& [name, _] : key->subkeys)
        subkey_name = std::max(subkey_name, name.size());
    for (const RegistryValue& value : key->values.all()) {
        value_name = std::max(value_name, value.name.size());
        value_data = std::max(value_data, value.data.size());
    }
    put(subkeys, key->subkeys.size());
    put(longest_subkey, subkey_name);
    put(values, key->values.all().size());
    put(longest_value_name, value_name);
    put(longest_data, value_data);
    return ERROR_SUCCESS;
}

LSTATUS RegEnumValueA(HKEY handle, DWORD index, LPSTR name, LPDWORD name_size, LPDWORD, LPDWORD type,
                      LPBYTE data, LPDWORD size) {
    if (const DWORD code = substitute::failing("RegEnumValueA", ERROR_ACCESS_DENIED))
        return static_cast<LSTATUS>(code);
    RegistryKey* key = nullptr;
    if (const LSTATUS status = usable(handle, KEY_QUERY_VALUE, key); status != ERROR_SUCCESS)
        return status;
    if (index >= key->values.all().size())
        return ERROR_NO_MORE_ITEMS;
    const RegistryValue& value = key->values.all()[index];
    if (const LSTATUS status = copy_data(value, type, data, size); status != ERROR_SUCCESS)
        return status;
    return copy_name(value.name, name, name_size);
}
