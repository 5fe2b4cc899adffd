#pragma once
/// The keyboard focus in the main window. The styles of most controls exclude them from the system's dialog
/// navigation, so the program itself moves the focus and presses the focused button.
#include "platform/win32.h"

/// Handles a key that `window` or one of its descendants is given: Tab and Shift+Tab move the focus, through
/// the tree, the shown page's controls in creation order, Test Connection while visible, OK while enabled and
/// Close/Cancel; Enter presses a push button; arrows do nothing in a control that has no use for them. False
/// for any other message, which the caller handles.
bool handle_key(HWND window, const MSG& message);

/// While one exists, these keys also work while a message box is open, whose own loop handles the thread's
/// messages and would ignore them.
class KeysBesideBoxes {
public:
    KeysBesideBoxes();
    KeysBesideBoxes(const KeysBesideBoxes&) = delete;
    KeysBesideBoxes& operator=(const KeysBesideBoxes&) = delete;
    ~KeysBesideBoxes();

private:
    HHOOK hook_;
};

/// Gives the focus back when the user returns from another program, a message box or the taskbar: to `left`,
/// the control that had it, or to the tree if that control can no longer be used. Does nothing if `left` is
/// null, because no control had the focus yet.
void restore_focus(HWND window, HWND left);

/// Moves the focus to the tree if `control`, which is about to be hidden, has it.
void move_focus_off(HWND window, HWND control);
/// The same for the controls of the shown page, which are about to be destroyed.
void move_focus_off_page(HWND window);
