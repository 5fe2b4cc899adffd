#include "ctl/machine/registry.h"

#include "ctl/io/encoding.h"

namespace ctl {
namespace {

bool is_text(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ; }

} // namespace

/// The substitute keeps texts as they are written: in the code page.
std::optional<RegistryValue> read_exactly(const LocalKey& key, const std::string& name) {
    DWORD type = 0;
    DWORD size = 0;
    if (RegQueryValueExA(key.get(), name.c_str(), nullptr, &type, nullptr, &size) != ERROR_SUCCESS)
        return std::nullopt;
    std::string octets(size, '\0');
    RegQueryValueExA(key.get(), name.c_str(), nullptr, nullptr, reinterpret_cast<BYTE*>(octets.data()),
                     &size);
    return RegistryValue{type, is_text(type) ? to_utf16(to_utf8(octets)) : octets};
}

LSTATUS write_exactly(const LocalKey& key, const std::string& name, const RegistryValue& value) {
    const std::string octets =
        is_text(value.type) ? from_utf8(from_utf16(value.octets)).value_or("") : value.octets;
    return RegSetValueExA(key.get(), name.c_str(), 0, value.type,
                          reinterpret_cast<const BYTE*>(octets.data()), static_cast<DWORD>(octets.size()));
}

} // namespace ctl
