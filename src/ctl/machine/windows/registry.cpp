#include "ctl/machine/registry.h"

#include "base/messages.h"
#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/windows/encoding.h"

namespace ctl {

std::optional<RegistryValue> read_exactly(const LocalKey& key, const std::string& name) {
    const std::wstring wide = to_wide(to_utf8(name));
    std::string octets;
    DWORD type = 0;
    DWORD size = 0;
    LSTATUS status = RegQueryValueExW(key.get(), wide.c_str(), nullptr, &type, nullptr, &size);
    if (status == ERROR_FILE_NOT_FOUND)
        return std::nullopt;
    if (status == ERROR_SUCCESS) {
        octets.resize(size);
        status = RegQueryValueExW(key.get(), wide.c_str(), nullptr, &type,
                                  reinterpret_cast<BYTE*>(octets.data()), &size);
    }
    if (status != ERROR_SUCCESS)
        throw Failure{ExitCode::failed, "cannot read the value \"" + to_utf8(name) + "\": " +
                                            to_utf8(system_error_string(static_cast<DWORD>(status)))};
    octets.resize(size);
    return RegistryValue{type, std::move(octets)};
}

LSTATUS write_exactly(const LocalKey& key, const std::string& name, const RegistryValue& value) {
    return RegSetValueExW(key.get(), to_wide(to_utf8(name)).c_str(), 0, value.type,
                          reinterpret_cast<const BYTE*>(value.octets.data()),
                          static_cast<DWORD>(value.octets.size()));
}

} // namespace ctl
