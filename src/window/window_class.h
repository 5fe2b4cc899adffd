#pragma once
#include "platform/win32.h"

/// Registers a window class with the program's icon in both sizes and with the colour of buttons. False when
/// the system refuses.
bool register_window_class(HINSTANCE instance, const char* name, WNDPROC procedure);
