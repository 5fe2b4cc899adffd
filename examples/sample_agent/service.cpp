#include "service.h"

#include "platform/win32.h"
#include "settings.h"

#include <fstream>
#include <sddl.h>

namespace {

// The service manager calls the functions below without an argument of ours.
std::string service_name;
Behaviour behaviour;
SERVICE_STATUS_HANDLE manager = nullptr;
HANDLE stop_requested = nullptr;

void note(const std::string& line) { std::ofstream(behaviour.notes, std::ios::app) << line << '\n'; }

void report(DWORD state, DWORD accepted = 0) {
    SERVICE_STATUS status = {};
    status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status.dwCurrentState = state;
    status.dwControlsAccepted = accepted;
    if (state == SERVICE_STOP_PENDING)
        status.dwWaitHint = (behaviour.stop_seconds + 5) * 1000;
    SetServiceStatus(manager, &status);
}

void WINAPI control(DWORD request) {
    if (request != SERVICE_CONTROL_STOP)
        return;
    report(SERVICE_STOP_PENDING);
    SetEvent(stop_requested);
}

void note_settings() {
    for (const char* name : {"AgentName", "AgentDomain", "ServerList", "Port"})
        note(std::string("setting ") + name + "=" + read_agent_value(name));
}

/// All access to the event, for SYSTEM, as which the service runs, and for administrators, as whom the tool
/// runs. By default SYSTEM lets nobody else signal what it creates.
constexpr char access[] = "D:(A;;0x1F0003;;;SY)(A;;0x1F0003;;;BA)";

HANDLE create_awaited_event() {
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, nullptr, FALSE};
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorA(access, SDDL_REVISION_1,
                                                              &attributes.lpSecurityDescriptor, nullptr))
        note("the event's access was not set");
    const HANDLE event = CreateEventA(&attributes, FALSE, FALSE, behaviour.event.c_str());
    LocalFree(attributes.lpSecurityDescriptor);
    return event;
}

/// Notes every signal until the stop is requested.
void wait_for_signals() {
    const HANDLE events[] = {stop_requested, create_awaited_event()};
    // A program that sees the service running must also find the log line.
    note("started");
    report(SERVICE_RUNNING, behaviour.refuse_stop ? 0 : SERVICE_ACCEPT_STOP);
    while (WaitForMultipleObjects(2, events, FALSE, INFINITE) == WAIT_OBJECT_0 + 1)
        note("signalled");
    CloseHandle(events[1]);
}

void WINAPI service_main(DWORD, LPSTR*) {
    manager = RegisterServiceCtrlHandlerA(service_name.c_str(), control);
    report(SERVICE_START_PENDING);
    stop_requested = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    note_settings();
    wait_for_signals();
    note("stopping");
    Sleep(behaviour.stop_seconds * 1000);
    note("stopped");
    CloseHandle(stop_requested);
    report(SERVICE_STOPPED);
}

} // namespace

int run_service(const std::string& name) {
    service_name = name;
    behaviour = read_behaviour(name);
    if (behaviour.fail_start) {
        note("failed to start");
        return 1;
    }
    SERVICE_TABLE_ENTRYA services[] = {{service_name.data(), service_main}, {nullptr, nullptr}};
    return StartServiceCtrlDispatcherA(services) ? 0 : 1;
}
