#pragma once
/// Keyboard navigation of the main window. The controls' styles leave most of them out of the system's own
/// dialog navigation, so the program moves the focus itself; keys other than Tab stay with the system.
#include "platform/win32.h"

#include <vector>

/// The controls that Tab visits, in order: tree, the shown page's controls in creation order, Test Connection
/// while visible, OK while enabled, Close/Cancel.
std::vector<HWND> focus_stops(HWND window);

/// Moves the focus when `message` is Tab or Shift+Tab for `window` or one of its descendants; false for any
/// other message, which the caller handles.
bool move_focus(HWND window, const MSG& message);

/// Leaving and coming back (another program, a message box): the control that had the focus gets it again.
/// `activation` is the low word of WM_ACTIVATE's parameter.
void remember_focus(HWND window, WORD activation);
void restore_focus(HWND window);
