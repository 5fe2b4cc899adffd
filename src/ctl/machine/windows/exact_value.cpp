#include "ctl/machine/exact_value.h"

#include "base/messages.h"
#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/windows/wide.h"

namespace ctl {

std::optional<ExactValue> read_exactly(const MachineKey& key, const std::string& name) {
    const std::wstring wide = to_wide(to_utf8(name));
    ExactValue value{};
    DWORD size = 0;
    LSTATUS status = RegQueryValueExW(key.get(), wide.c_str(), nullptr, &value.type, nullptr, &size);
    if (status == ERROR_FILE_NOT_FOUND)
        return std::nullopt;
    if (status == ERROR_SUCCESS) {
        value.octets.resize(size);
        status = RegQueryValueExW(key.get(), wide.c_str(), nullptr, &value.type,
                                  reinterpret_cast<BYTE*>(value.octets.data()), &size);
    }
    if (status != ERROR_SUCCESS)
        throw Failure{failed, "cannot read the value \"" + to_utf8(name) +
                                  "\": " + to_utf8(system_error_string(static_cast<DWORD>(status)))};
    value.octets.resize(size);
    return value;
}

LSTATUS write_exactly(const MachineKey& key, const std::string& name, const ExactValue& value) {
    return RegSetValueExW(key.get(), to_wide(to_utf8(name)).c_str(), 0, value.type,
                          reinterpret_cast<const BYTE*>(value.octets.data()),
                          static_cast<DWORD>(value.octets.size()));
}

} // namespace ctl
