#pragma once
/// A person's keyboard and mouse. Their input goes through the system to the window that has the focus or is
/// under the pointer.
#include "platform/win32.h"

#include <string>

namespace e2e {

/// Brings a window to the front and waits until it has the keyboard.
void bring_to_front(HWND window);
/// Whether a window has the keyboard.
bool is_in_front(HWND window);
/// Presses and releases a key, with Shift held when asked for.
void press_key(WORD key, bool shift = false);
/// Types a text, character by character.
void type(const std::string& text);
/// Presses the mouse button near the middle of a window or control, never twice in a row on the same spot.
void hold_down(HWND window);
/// Points again to where it was pressed, after the pointer may have been drawn away.
void hold_on();
/// Lets it go where it was pressed.
void let_go();
/// Clicks near the middle of a window or control; two clicks never make a double click.
void click(HWND window);
/// Moves the pointer to a point of the screen.
void point_at(POINT spot);
/// Clicks there, in one go.
void click_at(POINT spot);
/// Clicks on a check box and waits until its mark has changed.
void toggle(HWND check_box);
/// Drags a window's lower right corner to a point of the screen.
void drag_corner(HWND window, POINT to);
/// Clicks on an edit control, replaces what it holds and waits until it holds the new text.
void replace_text(HWND edit, const std::string& text);

} // namespace e2e
