#include "support/system.h"

#include "support/registry.h"

namespace {

struct Search {
    const char* class_name;
    std::vector<HWND> found;
};

BOOL CALLBACK visit(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    if (lstrcmpiA(name, search.class_name) == 0)
        search.found.push_back(window);
    return TRUE;
}

} // namespace

void clean_system() {
    delete_key(test_key);
    delete_key("SOFTWARE\\Tavrin");
}

void see_machine_interfaces() {}

std::vector<HWND> own_windows(const char* class_name) {
    Search search = {class_name, {}};
    EnumThreadWindows(GetCurrentThreadId(), visit, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

void install_broken_service(const std::string& name) {
    const SC_HANDLE manager = OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    const SC_HANDLE service =
        CreateServiceA(manager, name.c_str(), name.c_str(), SERVICE_ALL_ACCESS, SERVICE_WIN32_OWN_PROCESS,
                       SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL, "C:\\missing.exe", nullptr, nullptr,
                       nullptr, nullptr, nullptr);
    ASSERT_NE(service, nullptr) << GetLastError();
    CloseServiceHandle(service);
    CloseServiceHandle(manager);
}

void remove_service(const std::string& name) {
    const SC_HANDLE manager = OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    if (const SC_HANDLE service = OpenServiceA(manager, name.c_str(), SERVICE_ALL_ACCESS)) {
        DeleteService(service);
        CloseServiceHandle(service);
    }
    CloseServiceHandle(manager);
}

void skip_silence(std::function<bool(std::size_t sent)> /*answered*/) {}
