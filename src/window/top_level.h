#pragma once
/// The program's top-level windows: the class of one, and the main window as far as the folders below app/
/// need it.
#include "platform/win32.h"

/// The main window: it owns the message boxes and the wait window, receives the page-changed message, and is
/// the window of the keyboard navigation. Null before it is created, after it is destroyed and after start-up
/// failed.
inline HWND main_window = nullptr;

/// Posted to the main window, without parameters, after the user edited the value of the page shown.
inline constexpr UINT page_changed_message = WM_APP + 1;
void post_page_changed();

/// Registers a window class with the program's icon in both sizes and with the colour of buttons. False when
/// the system refuses.
bool register_window_class(HINSTANCE instance, const char* name, WNDPROC procedure);
