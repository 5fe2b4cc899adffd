#include "substitute/services/services.h"

#include "substitute/calls.h"
#include "substitute/control/clock.h"
#include "substitute/control/services.h"
#include "substitute/kernel/kernel.h"
#include "substitute/text.h"

#include <map>

using substitute::folded;
using substitute::never;
using substitute::refuse;
using substitute::ServiceCounts;
using substitute::ServiceScript;

namespace {

struct Service {
    ServiceScript script;
    ServiceCounts counts;
    DWORD asked_access = 0;
    bool stop_requested = false;
    DWORD next_state = 0; // 0: nothing is pending
    std::uint64_t due = 0;
};

struct OpenService {
    std::string name; // folded; empty for the manager
    DWORD access = 0;
};

struct State {
    std::map<std::string, Service> services; // by folded name
    std::map<SC_HANDLE, OpenService> open;
    std::intptr_t last = 0;
};

State& state() {
    static State instance;
    return instance;
}

const substitute::ResetHook reset_hook([] { state() = State{}; });

SC_HANDLE add_handle(const std::string& name, DWORD access) {
    const auto handle = reinterpret_cast<SC_HANDLE>(state().last += 4);
    state().open[handle] = {name, access};
    return handle;
}

/// The service behind a handle that has the needed right; null with the last error set otherwise.
Service* usable(SC_HANDLE handle, DWORD needed) {
    const auto found = state().open.find(handle);
    if (found == state().open.end() || found->second.name.empty())
        return refuse<Service*>(ERROR_INVALID_HANDLE);
    if ((found->second.access & needed) != needed)
        return refuse<Service*>(ERROR_ACCESS_DENIED);
    const auto service = state().services.find(found->second.name);
    return service != state().services.end() ? &service->second
                                             : refuse<Service*>(ERROR_SERVICE_DOES_NOT_EXIST);
}

/// Applies the changes of state that are due.
void settle(Service& service) {
    if (service.next_state != 0 && substitute::clock_now() >= service.due) {
        service.script.state = service.next_state;
        service.next_state = 0;
    }
}

void begin(Service& service, DWORD pending_state, DWORD final_state, std::uint64_t time) {
    service.script.state = pending_state;
    service.next_state = time == never ? 0 : final_state;
    service.due = time == never ? 0 : substitute::clock_now() + time;
    settle(service);
}

void report(const Service& service, SERVICE_STATUS& status) {
    status = {};
    status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status.dwCurrentState = service.script.state;
    const bool accepts_stop = service.script.state == SERVICE_RUNNING && service.script.accepts_stop;
    status.dwControlsAccepted = accepts_stop ? SERVICE_ACCEPT_STOP : 0;
}

DWORD stop_error(const Service& service) {
    if (service.script.stop_error != 0)
        return service.script.stop_error;
    if (!service.script.dependents.empty())
        return ERROR_DEPENDENT_SERVICES_RUNNING;
    if (!service.script.accepts_stop)
        return ERROR_INVALID_SERVICE_CONTROL;
    switch (service.script.state) {
    case SERVICE_STOPPED: return ERROR_SERVICE_NOT_ACTIVE;
    case SERVICE_START_PENDING:
    case SERVICE_STOP_PENDING: return ERROR_SERVICE_CANNOT_ACCEPT_CTRL;
    default: return ERROR_SUCCESS;
    }
}

bool is_valid_name(const std::string& name) {
    return !name.empty() && name.find_first_of("/\\") == std::string::npos;
}

} // namespace

SC_HANDLE OpenSCManagerA(LPCSTR, LPCSTR, DWORD access) {
    return substitute::failing("OpenSCManagerA", ERROR_ACCESS_DENIED) ? nullptr : add_handle("", access);
}

SC_HANDLE OpenServiceA(SC_HANDLE manager, LPCSTR name, DWORD access) {
    if (substitute::failing("OpenServiceA", ERROR_ACCESS_DENIED))
        return nullptr;
    if (const auto open = state().open.find(manager);
        open == state().open.end() || !open->second.name.empty())
        return refuse<SC_HANDLE>(ERROR_INVALID_HANDLE);
    if (name == nullptr)
        return refuse<SC_HANDLE>(ERROR_INVALID_ADDRESS);
    if (!is_valid_name(name))
        return refuse<SC_HANDLE>(ERROR_INVALID_NAME);
    const auto found = state().services.find(folded(name));
    if (found == state().services.end())
        return refuse<SC_HANDLE>(ERROR_SERVICE_DOES_NOT_EXIST);
    const DWORD refusal = found->second.script.open_error;
    found->second.asked_access = access;
    return refusal != 0 ? refuse<SC_HANDLE>(refusal) : add_handle(found->first, access);
}

BOOL QueryServiceStatus(SC_HANDLE handle, SERVICE_STATUS* status) {
    if (substitute::failing("QueryServiceStatus", ERROR_INVALID_HANDLE))
        return FALSE;
    Service* const service = usable(handle, SERVICE_QUERY_STATUS);
    if (service == nullptr)
        return FALSE;
    ++service->counts.queries;
    if (service->stop_requested && service->script.query_error_while_stopping != 0)
        return refuse(service->script.query_error_while_stopping);
    settle(*service);
    report(*service, *status);
    return TRUE;
}

BOOL QueryServiceConfigA(SC_HANDLE handle, QUERY_SERVICE_CONFIGA* config, DWORD size, DWORD* needed) {
    if (substitute::failing("QueryServiceConfigA", ERROR_INVALID_HANDLE))
        return FALSE;
    const Service* const service = usable(handle, SERVICE_QUERY_CONFIG);
    if (service == nullptr)
        return FALSE;
    *needed = sizeof *config;
    if (size < *needed)
        return refuse(ERROR_INSUFFICIENT_BUFFER);
    *config = {};
    config->dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    config->dwStartType = service->script.start_type;
    return TRUE;
}

BOOL EnumDependentServicesA(SC_HANDLE handle, DWORD, ENUM_SERVICE_STATUSA* services, DWORD size,
                            DWORD* needed, DWORD* count) {
    if (substitute::failing("EnumDependentServicesA", ERROR_INVALID_HANDLE))
        return FALSE;
    Service* const service = usable(handle, SERVICE_ENUMERATE_DEPENDENTS);
    if (service == nullptr)
        return FALSE;
    std::vector<std::string>& names = service->script.dependents;
    *needed = static_cast<DWORD>(names.size() * sizeof *services);
    if (size < *needed)
        return refuse(ERROR_MORE_DATA);
    *count = static_cast<DWORD>(names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        services[i] = {names[i].data(), names[i].data(), {}};
    return TRUE;
}

BOOL ControlService(SC_HANDLE handle, DWORD control, SERVICE_STATUS* status) {
    if (substitute::failing("ControlService", ERROR_SERVICE_REQUEST_TIMEOUT))
        return FALSE;
    Service* const service = usable(handle, SERVICE_STOP);
    if (service == nullptr)
        return FALSE;
    if (control != SERVICE_CONTROL_STOP)
        return refuse(ERROR_INVALID_PARAMETER);
    ++service->counts.stops;
    settle(*service);
    const DWORD refusal = stop_error(*service);
    if (refusal == ERROR_SUCCESS) {
        service->stop_requested = true;
        begin(*service, SERVICE_STOP_PENDING, SERVICE_STOPPED, service->script.stop_time);
    }
    report(*service, *status);
    return refusal == ERROR_SUCCESS ? TRUE : refuse(refusal);
}

BOOL StartServiceA(SC_HANDLE handle, DWORD, LPCSTR*) {
    if (substitute::failing("StartServiceA", ERROR_SERVICE_REQUEST_TIMEOUT))
        return FALSE;
    Service* const service = usable(handle, SERVICE_START);
    if (service == nullptr)
        return FALSE;
    ++service->counts.starts;
    settle(*service);
    if (service->script.start_error != 0)
        return refuse(service->script.start_error);
    if (service->script.state != SERVICE_STOPPED)
        return refuse(ERROR_SERVICE_ALREADY_RUNNING);
    begin(*service, SERVICE_START_PENDING, SERVICE_RUNNING, service->script.start_time);
    return TRUE;
}

BOOL CloseServiceHandle(SC_HANDLE handle) {
    if (substitute::failing("CloseServiceHandle", ERROR_INVALID_HANDLE))
        return FALSE;
    return state().open.erase(handle) != 0 ? TRUE : refuse(ERROR_INVALID_HANDLE);
}

namespace substitute {

void set_service(const std::string& name, const ServiceScript& script) {
    state().services[folded(name)] = Service{script, {}, 0, false, 0, 0};
}

void remove_service(const std::string& name) { state().services.erase(folded(name)); }

DWORD service_state(const std::string& name) {
    Service& service = state().services.at(folded(name));
    settle(service);
    return service.script.state;
}

DWORD asked_access(const std::string& name) { return state().services.at(folded(name)).asked_access; }

ServiceCounts service_counts(const std::string& name) { return state().services.at(folded(name)).counts; }

int open_service_handles() { return static_cast<int>(state().open.size()); }

} // namespace substitute
