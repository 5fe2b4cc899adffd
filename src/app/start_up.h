#pragma once
#include "platform/win32.h"

/// The whole program: start-up, main window, message loop. Returns the exit code: the quit message's value,
/// or 1 after a fatal error, which the user has been shown.
int run_program(HINSTANCE instance, int show_command);
