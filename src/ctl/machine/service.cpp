#include "ctl/machine/service.h"

#include "service/service_handle.h"

#include <iterator>

namespace ctl {
namespace {

constexpr const char* states[] = {"unknown", "stopped",         "startPending", "stopPending",
                                  "running", "continuePending", "pausePending", "paused"};
constexpr const char* start_types[] = {"boot", "system", "automatic", "manual", "disabled"};

std::string state_of(SC_HANDLE service) {
    SERVICE_STATUS status{};
    const bool known = QueryServiceStatus(service, &status) && status.dwCurrentState < std::size(states);
    return states[known ? status.dwCurrentState : 0];
}

/// The system never needs more than 8 KiB for a configuration.
std::string start_type_of(SC_HANDLE service) {
    alignas(QUERY_SERVICE_CONFIGA) BYTE octets[8192];
    auto* const config = reinterpret_cast<QUERY_SERVICE_CONFIGA*>(octets);
    DWORD needed = 0;
    const bool known = QueryServiceConfigA(service, config, sizeof octets, &needed) &&
                       config->dwStartType < std::size(start_types);
    return known ? start_types[config->dwStartType] : "";
}

} // namespace

ServiceInfo service_info(const std::string& name) {
    const ServiceHandle manager(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_CONNECT));
    if (!manager)
        return {"unknown", {}};
    const ServiceHandle service(
        OpenServiceA(manager.get(), name.c_str(), SERVICE_QUERY_STATUS | SERVICE_QUERY_CONFIG));
    if (!service)
        return {GetLastError() == ERROR_SERVICE_DOES_NOT_EXIST ? "missing" : "unknown", {}};
    return {state_of(service.get()), start_type_of(service.get())};
}

} // namespace ctl
