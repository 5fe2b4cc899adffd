/// What somebody could put beside the program: a DLL under a system DLL's name. Where it is loaded, it leaves
/// a mark: a file with its own path and ".loaded" behind.
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
