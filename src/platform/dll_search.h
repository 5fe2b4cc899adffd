#pragma once
/// For the entry points of both programs, which run with an administrator's rights or as the system.
#include "platform/win32.h"

/// After this call, the system looks for DLLs only in its own folder. Otherwise, it would load a DLL that
/// somebody has put beside the program. For the same reason, linked DLLs are loaded late, except those that
/// Windows always takes from its own folder. Windows 7 without updates lacks the function.
inline void refuse_planted_dlls() {
    using SetDirectories = BOOL(WINAPI*)(DWORD);
    const FARPROC found = GetProcAddress(GetModuleHandleA("kernel32.dll"), "SetDefaultDllDirectories");
    if (found != nullptr)
        reinterpret_cast<SetDirectories>(reinterpret_cast<void*>(found))(LOAD_LIBRARY_SEARCH_SYSTEM32);
}
