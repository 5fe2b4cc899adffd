#pragma once
#include "platform/win32.h"

#include <string>

/// Shows a small window, centred over the main window and painted at once, that says what a long step is
/// doing. Returns its handle; null after a failure, of which the user has been told: the step goes on without
/// the window.
HWND open_wait_window(const std::string& text);

/// Closes the window, and handles no other message meanwhile. While the main window is disabled it is only
/// asked to close when messages are next handled. Null is allowed.
void close_wait_window(HWND window);

/// Where a block of `lines` lines, each `line_height` pixels high, starts so that it stands in the middle
/// between `client_top` and `client_height`. Negative for a text taller than its window.
int centred_text_top(int client_top, int client_height, int lines, int line_height);
