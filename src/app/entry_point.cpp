#include "app/start_up.h"

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int show_command) {
    return run_program(instance, show_command);
}
