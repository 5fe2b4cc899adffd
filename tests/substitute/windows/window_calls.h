#pragma once
/// The calls of the same names for the substitute's own use: they are neither recorded nor made to fail, so
/// that a test which counts or fails calls meets only those of the program.
#include "substitute/windows/user.h"

namespace substitute {

HWND create_window(const CREATESTRUCTA& create);
void destroy_window(HWND handle);
/// Returns whether the window was visible.
bool show_window(HWND handle, int command);
HWND set_focus(HWND handle);
/// Returns whether the window was disabled.
bool enable_window(HWND handle, bool enable);
bool set_window_pos(HWND handle, int x, int y, int width, int height, UINT flags);
HWND dialog_item(HWND parent, int id);

} // namespace substitute
