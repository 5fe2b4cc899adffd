#pragma once
/// A person's keyboard and mouse: what they do goes into the system's input and from there to whatever has
/// the focus or lies under the pointer.
#include "platform/win32.h"

#include <functional>
#include <string>

namespace e2e {

/// Brings a window to the front and waits until it has the keyboard.
void bring_to_front(HWND window);
/// Presses and releases a key, with Shift held when asked for.
void press_key(WORD key, bool shift = false);
/// Types a text, character by character.
void type(const std::string& text);
/// Presses the mouse button on the middle of a window or control.
void hold_down(HWND window);
/// Lets it go there.
void let_go(HWND window);
/// Clicks on the middle of a window or control.
void click(HWND window);
/// Clicks on a window or control, and again whenever nothing has come of it for some seconds: a box that has
/// just closed may hand the activity over a moment later and break a click off. `what` is waited for.
void click_until(HWND window, const std::string& what, const std::function<bool()>& reached);
/// Clicks on a check box and waits until its mark has changed.
void toggle(HWND check_box);
/// Drags a window's lower right corner to a point of the screen.
void drag_corner(HWND window, POINT to);
/// Clicks on an edit control, replaces what it holds and waits until it holds the new text.
void replace_text(HWND edit, const std::string& text);

} // namespace e2e
