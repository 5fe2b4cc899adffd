#pragma once
/// For the entry points of both programs, which run with an administrator's rights or as the system.
#include "platform/win32.h"

/// From here on the system looks for DLLs in its own folder alone. One that somebody has put beside the
/// program would otherwise be loaded. What is linked is loaded late for the same reason, unless Windows takes
/// it from its own folder anyway. A Windows 7 without its updates lacks the function.
inline void refuse_planted_dlls() {
    using SetDirectories = BOOL(WINAPI*)(DWORD);
    const FARPROC found = GetProcAddress(GetModuleHandleA("kernel32.dll"), "SetDefaultDllDirectories");
    if (found != nullptr)
        reinterpret_cast<SetDirectories>(reinterpret_cast<void*>(found))(LOAD_LIBRARY_SEARCH_SYSTEM32);
}
