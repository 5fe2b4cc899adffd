#include "ctl/machine/service.h"

#include "base/messages.h"
#include "base/text.h"
#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/printable.h"
#include "ctl/io/system.h"
#include "ctl/machine/data_folder.h"
#include "service/service_handle.h"

#include <iterator>
#include <vector>

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

/// 8 KiB are the documented maximum for a service's configuration.
std::string start_type_of(SC_HANDLE service) {
    alignas(QUERY_SERVICE_CONFIGA) BYTE octets[8192];
    auto* const config = reinterpret_cast<QUERY_SERVICE_CONFIGA*>(octets);
    DWORD needed = 0;
    const bool known = QueryServiceConfigA(service, config, sizeof octets, &needed) &&
                       config->dwStartType < std::size(start_types);
    return known ? start_types[config->dwStartType] : "";
}

[[noreturn]] void refuse(const std::string& text, ExitCode code = ExitCode::failed) {
    throw Failure{
        code, text + "; nothing was written; use \"--restart never\" to write the values without a restart"};
}

/// An open service.
class ServiceView {
public:
    ServiceView(const std::string& name, DWORD rights)
        : manager_(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_CONNECT)) {
        if (manager_)
            service_ = ServiceHandle(OpenServiceA(manager_.get(), name.c_str(), rights));
        error_ = service_ ? 0 : GetLastError();
    }

    explicit operator bool() const { return static_cast<bool>(service_); }
    SC_HANDLE get() const { return service_.get(); }
    /// Why it could not be opened.
    DWORD error() const { return error_; }

private:
    ServiceHandle manager_;
    ServiceHandle service_;
    DWORD error_;
};

void refuse_unless_missing(const std::string& name, DWORD error) {
    if (error == ERROR_ACCESS_DENIED)
        refuse("access to the service " + to_utf8(name) + " is denied", ExitCode::access_denied);
    if (error != ERROR_SERVICE_DOES_NOT_EXIST)
        refuse("cannot open the service " + to_utf8(name) + ": " + to_utf8(system_error_string(error)));
}

bool is_on_its_way(DWORD state) {
    return state == SERVICE_START_PENDING || state == SERVICE_STOP_PENDING ||
           state == SERVICE_CONTINUE_PENDING || state == SERVICE_PAUSE_PENDING;
}

constexpr DWORD between_looks = 100;

/// Waits until the service is neither starting nor stopping, or the time is over.
SERVICE_STATUS settled(SC_HANDLE service, std::chrono::milliseconds limit) {
    const std::uint64_t end = GetTickCount64() + static_cast<std::uint64_t>(limit.count());
    SERVICE_STATUS status{};
    while (QueryServiceStatus(service, &status) && is_on_its_way(status.dwCurrentState) &&
           GetTickCount64() < end)
        Sleep(between_looks);
    return status;
}

/// The names of the running services that depend on this one; empty also if they may not be listed. 256 KiB
/// are the documented maximum.
std::string running_dependents(const std::string& name) {
    const ServiceView service(name, SERVICE_ENUMERATE_DEPENDENTS);
    std::vector<ENUM_SERVICE_STATUSA> found(std::size_t{256} * 1024 / sizeof(ENUM_SERVICE_STATUSA));
    DWORD needed = 0;
    DWORD count = 0;
    const auto size = static_cast<DWORD>(found.size() * sizeof found.front());
    std::string names;
    if (!service ||
        !EnumDependentServicesA(service.get(), SERVICE_ACTIVE, found.data(), size, &needed, &count))
        return names;
    for (DWORD i = 0; i < count; ++i)
        names += (i == 0 ? "" : ", ") + to_utf8(found[i].lpServiceName);
    return names;
}

void require_stop(const std::string& name, DWORD controls) {
    const std::string who = "the service " + to_utf8(name);
    const std::string dependents = running_dependents(name);
    if (!dependents.empty())
        refuse(who + " cannot be stopped while services that depend on it run: " + dependents);
    if ((controls & SERVICE_ACCEPT_STOP) == 0)
        refuse(who + " does not accept a stop");
}

bool may_be_in_a_file_name(char character) {
    return static_cast<unsigned char>(character) >= ' ' &&
           std::string_view("<>:\"/\\|?*%").find(character) == std::string_view::npos;
}

/// In lower case, because the service manager ignores the case of names.
std::string note_for(const std::string& service) {
    return join_path(data_folder(),
                     "restart-" + percent_encoded(to_utf8(to_lower(service)), may_be_in_a_file_name));
}

} // namespace

ServiceInfo service_info(const std::string& name) {
    const ServiceView service(name, SERVICE_QUERY_STATUS | SERVICE_QUERY_CONFIG);
    if (!service)
        return {service.error() == ERROR_SERVICE_DOES_NOT_EXIST ? "missing" : "unknown", {}};
    return {state_of(service.get()), start_type_of(service.get())};
}

void require_restartable(const std::string& name, std::chrono::milliseconds limit) {
    const ServiceView service(name, restart_rights);
    if (!service)
        return refuse_unless_missing(name, service.error());
    const SERVICE_STATUS status = settled(service.get(), limit);
    const std::string who = "the service " + to_utf8(name);
    if (is_on_its_way(status.dwCurrentState))
        refuse(who + " did not finish starting or stopping within --timeout");
    if (status.dwCurrentState == SERVICE_STOPPED)
        return;
    if (start_type_of(service.get()) == "disabled")
        refuse(who + " is disabled and could not be started again");
    require_stop(name, status.dwControlsAccepted);
}

void wait_until_settled(const std::string& name, std::chrono::milliseconds limit) {
    if (const ServiceView service(name, SERVICE_QUERY_STATUS); service)
        settled(service.get(), limit);
}

bool restart_is_pending(const std::string& service) {
    return !service.empty() && file_exists(note_for(service));
}

void note_restart(const std::string& service) {
    const std::string path = note_for(service);
    if (!write_file(path, to_utf8(service) + "\n"))
        throw Failure{ExitCode::failed, "cannot write " + path};
}

void forget_restart(const std::string& service) { remove_file(note_for(service)); }

} // namespace ctl
