#include "ctl/machine/machine_key.h"

#include "base/messages.h"
#include "ctl/failure.h"
#include "ctl/io/encoding.h"

namespace ctl {
namespace {

[[noreturn]] void refuse(LSTATUS status, const std::string& path, const std::string& if_missing) {
    const std::string key = "the key HKEY_LOCAL_MACHINE\\" + to_utf8(path);
    switch (status) {
    case ERROR_ACCESS_DENIED: throw Failure{access_denied, "access to " + key + " is denied"};
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        throw Failure{invalid, !if_missing.empty()
                                   ? if_missing
                                   : key + " does not exist; install the agent, or create the key"};
    default:
        throw Failure{failed,
                      key + " cannot be opened: " + to_utf8(system_error_string(static_cast<DWORD>(status)))};
    }
}

} // namespace

MachineKey::MachineKey(const std::string& path, REGSAM access, const std::string& if_missing)
    : key_(HKEY_LOCAL_MACHINE, path, access) {
    if (!key_)
        refuse(key_.status(), path, if_missing);
}

} // namespace ctl
