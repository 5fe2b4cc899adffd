#pragma once
#include "platform/win32.h"

/// Registers a class of windows that bear the program's icon, in the two sizes in which it is drawn, and have
/// the colour of buttons. False when the system refuses.
bool register_window_class(HINSTANCE instance, const char* name, WNDPROC procedure);
