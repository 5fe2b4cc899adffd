#pragma once
/// Child controls: their creation, destruction, placement and notifications.
#include "platform/win32.h"

#include <string>

/// A control's place in its parent's client area, in pixels.
struct Placement {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    friend bool operator==(const Placement&, const Placement&) = default;
};

/// The identifier of a control that is never looked up.
inline constexpr int no_identifier = -1;

/// Describes a child control for its creation.
struct ControlDescription {
    const char* window_class;
    const char* text = "";
    /// Added to WS_CHILD and, unless `hidden`, WS_VISIBLE.
    DWORD style = 0;
    DWORD extended_style = 0;
    bool hidden = false;
    int identifier = no_identifier;
    /// The place until the first layout.
    Placement placement{.width = 1, .height = 1};
    bool has_stock_font = true;
    /// The text that is thrown if the control cannot be created; null if the parent can do without it.
    const char* failure = nullptr;
};

HWND create_control(HWND parent, const ControlDescription& description);
/// Forgets the handle and destroys the control.
void destroy_control(HWND& control);

/// Moves the control within its parent.
void place(HWND control, const Placement& placement);
RECT client_rectangle(HWND window);
/// Fills the window's client area with the colour of buttons.
void fill_ground(HWND window, HDC context);

/// Sends the message to every window inside `parent`.
void tell_children(HWND parent, UINT message, WPARAM wparam, LPARAM lparam);

/// The control's text, cut to `longest_value` bytes.
std::string control_text(HWND control);

/// Whether a WM_COMMAND is the `notification` of `control`.
bool reports(UINT message, WPARAM wparam, LPARAM lparam, HWND control, WORD notification);
/// Whether a WM_COMMAND says that a button of the parent, any of them, was pressed.
bool reports_press(UINT message, WPARAM wparam);
