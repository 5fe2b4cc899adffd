#pragma once
#include "platform/win32.h"

/// The window procedure of the main window. Exceptions are kept for the message loop (window/guard.h).
LRESULT CALLBACK main_window_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
