#pragma once
/// The keyboard in the main window. The controls' styles leave most of them out of the system's own dialog
/// navigation, so the program moves the focus itself, and presses what has it.
#include "platform/win32.h"

#include <vector>

/// The controls that Tab visits, in order: tree, the shown page's controls in creation order, Test Connection
/// while visible, OK while enabled, Close/Cancel.
std::vector<HWND> focus_stops(HWND window);

/// Handles a key that `window` or one of its descendants is given: Tab and Shift+Tab move the focus, Enter
/// presses a push button, arrows do nothing in a control that has no use for them. False for any other
/// message, which the caller handles.
bool handle_key(HWND window, const MSG& message);

/// Leaving and coming back (another program, a message box, the taskbar): the control that had the focus gets
/// it again, or the tree if that control can no longer be used. Before the user has been anywhere, nothing
/// gets it.
void remember_focus(HWND window, HWND control);
void restore_focus(HWND window);

/// Gives the focus to the tree if `control` has it, which is about to be hidden.
void move_focus_off(HWND window, HWND control);
/// Likewise for the controls of the page shown, which is about to be taken down.
void move_focus_off_page(HWND window);
