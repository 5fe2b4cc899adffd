#include "app/start_up.h"

#include "platform/win32.h"

namespace {

/// From here on the system looks for DLLs in its own folder alone. One that somebody has put beside the
/// program would otherwise run with an administrator's rights. A Windows 7 without its updates lacks the
/// function.
void refuse_planted_dlls() {
    using SetDirectories = BOOL(WINAPI*)(DWORD);
    const FARPROC found = GetProcAddress(GetModuleHandleA("kernel32.dll"), "SetDefaultDllDirectories");
    if (found != nullptr)
        reinterpret_cast<SetDirectories>(reinterpret_cast<void*>(found))(LOAD_LIBRARY_SEARCH_SYSTEM32);
}

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int show_command) {
    refuse_planted_dlls();
    return run_program(instance, show_command);
}
