/// A DLL with the name of a system DLL, as an attacker could put it beside the program. When it is loaded, it
/// creates a file with its own path and the ending ".loaded".
#include "platform/win32.h"

#include <string>

namespace {

void leave_mark(HINSTANCE module) {
    char path[MAX_PATH];
    GetModuleFileNameA(module, path, sizeof path);
    CloseHandle(CreateFileA((std::string(path) + ".loaded").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr));
}

} // namespace

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH)
        leave_mark(module);
    return TRUE;
}

/// The system's function of this name, for programs that import it.
extern "C" __declspec(dllexport) DWORD WINAPI planted_table(MIB_IPADDRTABLE*, ULONG*, BOOL) {
    return ERROR_NOT_SUPPORTED;
}
