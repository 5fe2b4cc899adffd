#pragma once
/// Windows of another process, as anyone can see them from outside.
#include "platform/win32.h"

#include <string>
#include <vector>

namespace e2e {

/// Sends a message that the other process must answer in time; throws std::runtime_error when it does not.
LRESULT send(HWND window, UINT message, WPARAM wparam = 0, LPARAM lparam = 0);
/// The text of a window or control.
std::string text_of(HWND window);
std::string class_of(HWND window);
/// Whether the control's class is `name`, without regard to case.
bool is_class(HWND window, const char* name);
/// The direct children in their order.
std::vector<HWND> children_of(HWND window);
/// The visible top-level windows of a process.
std::vector<HWND> windows_of(DWORD process);
/// The window of a process that has the keyboard, or none.
HWND focus_of(HWND window);
/// Whether nothing of a window and its children waits to be painted.
bool is_painted(HWND window);

} // namespace e2e
