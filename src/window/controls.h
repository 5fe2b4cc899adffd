#pragma once
/// What the pages do with their controls.
#include "platform/win32.h"

#include <string>

/// How a child control comes into being, and the text that is thrown when it does not.
struct ChildControl {
    const char* window_class;
    const char* text;
    DWORD style;
    DWORD extended_style;
    const char* failure;
};

/// No control of a page is looked up by its identifier.
HMENU no_identifier();
/// Creates a visible child of `parent` with the stock font; until it is placed it covers one pixel.
HWND create_child(HWND parent, const ChildControl& description);
/// Destroys the control and forgets its handle.
void destroy_child(HWND& control);

/// Moves the control within its parent, in pixels.
void place(HWND control, int x, int y, int width, int height);
RECT client_rectangle(HWND window);
/// Draws the ground of buttons over the window's client area.
void fill_ground(HWND window, HDC context);

/// The longest text, in bytes, that a page takes from a control; what follows is cut.
inline constexpr std::size_t longest_taken_text = 1023;
std::string control_text(HWND control);

/// Posted to the main window, without parameters, after the user edited the value of the page shown.
inline constexpr UINT page_changed_message = WM_APP + 1;
void post_page_changed();

/// True for a WM_COMMAND by which `control` reports `notification`.
bool reports(UINT message, WPARAM wparam, LPARAM lparam, HWND control, WORD notification);
/// True for a WM_COMMAND by which whatever button of the page reports that it was pressed.
bool reports_press(UINT message, WPARAM wparam);
