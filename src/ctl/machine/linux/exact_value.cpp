#include "ctl/machine/exact_value.h"

#include "ctl/io/encoding.h"

namespace ctl {

namespace {

bool is_text(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ; }

} // namespace

/// Over the substitute, which keeps texts as they are written: in the code page.
std::optional<ExactValue> read_exactly(const MachineKey& key, const std::string& name) {
    ExactValue value{};
    DWORD size = 0;
    if (RegQueryValueExA(key.get(), name.c_str(), nullptr, &value.type, nullptr, &size) != ERROR_SUCCESS)
        return std::nullopt;
    value.octets.resize(size);
    RegQueryValueExA(key.get(), name.c_str(), nullptr, nullptr, reinterpret_cast<BYTE*>(value.octets.data()),
                     &size);
    if (is_text(value.type))
        value.octets = to_utf16(to_utf8(value.octets));
    return value;
}

LSTATUS write_exactly(const MachineKey& key, const std::string& name, const ExactValue& value) {
    const std::string octets =
        is_text(value.type) ? from_utf8(from_utf16(value.octets)).value_or("") : value.octets;
    return RegSetValueExA(key.get(), name.c_str(), 0, value.type,
                          reinterpret_cast<const BYTE*>(octets.data()), static_cast<DWORD>(octets.size()));
}

} // namespace ctl
