#include "ctl/machine/exact_value.h"

#include "ctl/io/encoding.h"

namespace ctl {

/// Over the substitute, which keeps texts as they are written: in the code page.
std::optional<ExactValue> read_exactly(const MachineKey& key, const std::string& name) {
    ExactValue value{};
    DWORD size = 0;
    if (RegQueryValueExA(key.get(), name.c_str(), nullptr, &value.type, nullptr, &size) != ERROR_SUCCESS)
        return std::nullopt;
    value.octets.resize(size);
    RegQueryValueExA(key.get(), name.c_str(), nullptr, nullptr, reinterpret_cast<BYTE*>(value.octets.data()),
                     &size);
    if (value.type == REG_SZ || value.type == REG_EXPAND_SZ || value.type == REG_MULTI_SZ)
        value.octets = to_utf16(to_utf8(value.octets));
    return value;
}

} // namespace ctl
