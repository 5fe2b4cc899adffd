#pragma once
/// The keyboard focus in the main window. The controls' styles leave most of them out of the system's own
/// dialog navigation, so the program moves the focus itself, and presses what has it.
#include "platform/win32.h"

/// Handles a key that `window` or one of its descendants is given: Tab and Shift+Tab move the focus, through
/// the tree, the shown page's controls in creation order, Test Connection while visible, OK while enabled and
/// Close/Cancel; Enter presses a push button; arrows do nothing in a control that has no use for them. False
/// for any other message, which the caller handles.
bool handle_key(HWND window, const MSG& message);

/// While one lives, keys do the same beside a message box: its own loop takes the thread's messages then, and
/// knows nothing of the main window's keys.
class KeysBesideBoxes {
public:
    KeysBesideBoxes();
    KeysBesideBoxes(const KeysBesideBoxes&) = delete;
    KeysBesideBoxes& operator=(const KeysBesideBoxes&) = delete;
    ~KeysBesideBoxes();

private:
    HHOOK hook_;
};

/// The user comes back (from another program, a message box, the taskbar): the control that was `left` with
/// the focus gets it again, or the tree if that control can no longer be used. Null, before the user has been
/// anywhere: nothing gets it.
void restore_focus(HWND window, HWND left);

/// Gives the focus to the tree if `control` has it, which is about to be hidden.
void move_focus_off(HWND window, HWND control);
/// Likewise for the controls of the page shown, which is about to be taken down.
void move_focus_off_page(HWND window);
