#pragma once
/// The window with the tree, the page of the entry selected in it, and the buttons.
#include "platform/win32.h"

/// Throws a text when the system refuses.
void register_main_window_class(HINSTANCE instance);

/// Creates the main window, stores its handle and shows it. Throws the text of a fatal error.
void open_main_window(HINSTANCE instance, int show_command);
