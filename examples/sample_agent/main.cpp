/// A sample Tavrin Agent: a Windows service to try the configuration tool with.
#include "platform/win32.h"
#include "service.h"
#include "settings.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

const char usage[] =
    "sample_agent install [OPTION...]   installs the service; start it with: net start NAME\n"
    "sample_agent remove [--name NAME]  stops and removes it\n"
    "\n"
    "  --name NAME          the service's name (TavrinAgent)\n"
    "  --notes FILE         where it notes starts, stops and signals\n"
    "  --event NAME         the event that it waits on\n"
    "  --stop-seconds N     takes N seconds to stop\n"
    "  --refuse-stop        does not stop when asked to\n"
    "  --fail-start         fails when it is started\n"
    "  --disabled           cannot be started any more\n";

struct Options {
    std::string name = "TavrinAgent";
    Behaviour behaviour;
    DWORD start_type = SERVICE_DEMAND_START;
};

/// Takes one option off the front of the arguments, its value included; false when there is no such option.
bool take_option(char**& arguments, Options& options) {
    const std::string option = *arguments++;
    Behaviour& behaviour = options.behaviour;
    if (option == "--refuse-stop")
        return behaviour.refuse_stop = true;
    if (option == "--fail-start")
        return behaviour.fail_start = true;
    if (option == "--disabled") {
        options.start_type = SERVICE_DISABLED;
        return true;
    }
    if (!*arguments)
        return false;
    const char* value = *arguments++;
    if (option == "--name")
        options.name = value;
    else if (option == "--notes")
        behaviour.notes = value;
    else if (option == "--event")
        behaviour.event = value;
    else if (option == "--stop-seconds")
        behaviour.stop_seconds = static_cast<unsigned>(std::strtoul(value, nullptr, 10));
    else
        return false;
    return true;
}

int fail(const char* what) {
    std::fprintf(stderr, "sample_agent: cannot %s: error %lu\n", what, GetLastError());
    return 1;
}

std::string command_line(const std::string& name) {
    char path[MAX_PATH];
    GetModuleFileNameA(nullptr, path, sizeof path);
    return std::string("\"") + path + "\" run " + name;
}

/// The service, created unless it is installed already; null when neither succeeds.
SC_HANDLE create_or_open(SC_HANDLE manager, const Options& options) {
    const SC_HANDLE service =
        CreateServiceA(manager, options.name.c_str(), "Tavrin Agent (sample)", SERVICE_ALL_ACCESS,
                       SERVICE_WIN32_OWN_PROCESS, options.start_type, SERVICE_ERROR_NORMAL,
                       command_line(options.name).c_str(), nullptr, nullptr, nullptr, nullptr, nullptr);
    if (service || GetLastError() != ERROR_SERVICE_EXISTS)
        return service;
    return OpenServiceA(manager, options.name.c_str(), SERVICE_ALL_ACCESS);
}

bool set_start_type(SC_HANDLE service, DWORD start_type) {
    return ChangeServiceConfigA(service, SERVICE_NO_CHANGE, start_type, SERVICE_NO_CHANGE, nullptr, nullptr,
                                nullptr, nullptr, nullptr, nullptr, nullptr) != FALSE;
}

int install(const Options& options) {
    const SC_HANDLE manager = OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    if (!manager)
        return fail("open the service manager");
    const SC_HANDLE service = create_or_open(manager, options);
    const bool stored = service && set_start_type(service, options.start_type) &&
                        write_behaviour(options.name, options.behaviour);
    const int result = !service ? fail("create the service") : !stored ? fail("store the options") : 0;
    if (service)
        CloseServiceHandle(service);
    CloseServiceHandle(manager);
    return result;
}

/// Waits up to a minute for a service that was asked to stop.
void wait_until_stopped(SC_HANDLE service) {
    SERVICE_STATUS status = {};
    for (int tries = 600; tries > 0 && QueryServiceStatus(service, &status); --tries) {
        if (status.dwCurrentState == SERVICE_STOPPED)
            return;
        Sleep(100);
    }
}

/// Ends the process of a service that refuses to stop.
void end_process(SC_HANDLE service) {
    SERVICE_STATUS_PROCESS status = {};
    DWORD size = 0;
    if (!QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&status),
                              sizeof status, &size) ||
        status.dwProcessId == 0)
        return;
    if (const HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, status.dwProcessId)) {
        TerminateProcess(process, 1);
        CloseHandle(process);
    }
}

void stop(SC_HANDLE service) {
    SERVICE_STATUS status;
    if (ControlService(service, SERVICE_CONTROL_STOP, &status))
        wait_until_stopped(service);
    else if (GetLastError() != ERROR_SERVICE_NOT_ACTIVE)
        end_process(service);
}

int remove(const Options& options) {
    const SC_HANDLE manager = OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    if (!manager)
        return fail("open the service manager");
    const SC_HANDLE service = OpenServiceA(manager, options.name.c_str(), SERVICE_ALL_ACCESS);
    int result = 0;
    if (service) {
        stop(service);
        result = DeleteService(service) ? 0 : fail("remove the service");
        CloseServiceHandle(service);
    } else {
        result = fail("open the service");
    }
    CloseServiceHandle(manager);
    return result;
}

} // namespace

int main(int count, char** arguments) {
    Options options;
    const std::string command = count > 1 ? arguments[1] : "";
    if (command == "run" && count == 3)
        return run_service(arguments[2]);
    for (char** rest = arguments + 2; count > 2 && *rest;)
        if (!take_option(rest, options)) {
            std::fputs(usage, stderr);
            return 2;
        }
    if (command == "install")
        return install(options);
    if (command == "remove")
        return remove(options);
    std::fputs(usage, stderr);
    return 2;
}
