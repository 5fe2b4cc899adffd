#pragma once
/// Child controls: how they come into being and go, where they stand, what they report.
#include "platform/win32.h"

#include <cstddef>
#include <string>

/// Where a control stands in its parent's client area, in pixels.
struct Placement {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    friend bool operator==(const Placement&, const Placement&) = default;
};

/// For a control that nobody looks up by its identifier.
inline constexpr int no_identifier = -1;

/// How a child control comes into being.
struct ControlDescription {
    const char* window_class;
    const char* text = "";
    /// Beside WS_CHILD and, unless `hidden`, WS_VISIBLE.
    DWORD style = 0;
    DWORD extended_style = 0;
    bool hidden = false;
    int identifier = no_identifier;
    /// Until it is laid out.
    Placement placement{.width = 1, .height = 1};
    bool has_stock_font = true;
    /// The text that is thrown when there is no such control; null when the parent goes on without it.
    const char* failure = nullptr;
};

HWND create_control(HWND parent, const ControlDescription& description);
/// Destroys the control and forgets its handle.
void destroy_control(HWND& control);

/// Moves the control within its parent.
void place(HWND control, const Placement& placement);
RECT client_rectangle(HWND window);
/// Draws the ground of buttons over the window's client area.
void fill_ground(HWND window, HDC context);

/// The longest text, in bytes, that is taken from a control; what follows is cut.
inline constexpr std::size_t longest_taken_text = 1023;
std::string control_text(HWND control);

/// True for a WM_COMMAND by which `control` reports `notification`.
bool reports(UINT message, WPARAM wparam, LPARAM lparam, HWND control, WORD notification);
/// True for a WM_COMMAND by which whatever button of the parent reports that it was pressed.
bool reports_press(UINT message, WPARAM wparam);
