#include "app/start_up.h"

#include "platform/dll_search.h"
#include "platform/win32.h"

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int show_command) {
    refuse_planted_dlls();
    return run_program(instance, show_command);
}
