// The smallest program with the same window, which is empty.
#include "peers/bare_window.h"

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int show_command) {
    return run_bare_window(instance, show_command, {});
}
