#include "support/services.h"

#include "platform/win32.h"

#include <gtest/gtest.h>

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
