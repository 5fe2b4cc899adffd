#include "window/controls.h"

#include "base/text.h"
#include "window/guard.h"

#include <array>
#include <utility>

HWND create_control(HWND parent, const ControlDescription& description) {
    const DWORD visible = description.hidden ? 0 : WS_VISIBLE;
    const Placement& at = description.placement;
    const HWND control = CreateWindowExA(
        description.extended_style, description.window_class, description.text,
        WS_CHILD | visible | description.style, at.x, at.y, at.width, at.height, parent,
        reinterpret_cast<HMENU>(INT_PTR{description.identifier}), GetModuleHandleA(nullptr), nullptr);
    rethrow_kept();
    if (control == nullptr && description.failure != nullptr)
        throw std::string(description.failure);
    if (description.has_stock_font)
        SendMessageA(control, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
    return control;
}

void destroy_control(HWND& control) { DestroyWindow(std::exchange(control, nullptr)); }

void place(HWND control, const Placement& placement) {
    SetWindowPos(control, nullptr, placement.x, placement.y, placement.width, placement.height, SWP_NOZORDER);
}

RECT client_rectangle(HWND window) {
    RECT rectangle{};
    GetClientRect(window, &rectangle);
    return rectangle;
}

void fill_ground(HWND window, HDC context) {
    const RECT area = client_rectangle(window);
    FillRect(context, &area, reinterpret_cast<HBRUSH>(INT_PTR{COLOR_BTNFACE + 1}));
}

void tell_children(HWND parent, UINT message, WPARAM wparam, LPARAM lparam) {
    for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        SendMessageA(child, message, wparam, lparam);
        tell_children(child, message, wparam, lparam);
    }
}

std::string control_text(HWND control) {
    std::array<char, longest_value + 1> buffer{};
    GetWindowTextA(control, buffer.data(), static_cast<int>(buffer.size()));
    return buffer.data();
}

bool reports(UINT message, WPARAM wparam, LPARAM lparam, HWND control, WORD notification) {
    return message == WM_COMMAND && reinterpret_cast<HWND>(lparam) == control &&
           HIWORD(wparam) == notification;
}

bool reports_press(UINT message, WPARAM wparam) {
    return message == WM_COMMAND && HIWORD(wparam) == BN_CLICKED;
}
