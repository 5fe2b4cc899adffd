#include "window/controls.h"

#include "window/guard.h"
#include "window/main_handle.h"

#include <array>

HMENU no_identifier() { return reinterpret_cast<HMENU>(static_cast<INT_PTR>(-1)); }

HWND create_child(HWND parent, const ChildControl& description) {
    const HWND control = CreateWindowExA(description.extended_style, description.window_class,
                                         description.text, WS_CHILD | WS_VISIBLE | description.style, 0, 0, 1,
                                         1, parent, no_identifier(), GetModuleHandleA(nullptr), nullptr);
    rethrow_kept();
    if (control == nullptr)
        throw std::string(description.failure);
    SendMessageA(control, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
    return control;
}

void destroy_child(HWND& control) {
    DestroyWindow(control);
    control = nullptr;
}

void place(HWND control, int x, int y, int width, int height) {
    SetWindowPos(control, nullptr, x, y, width, height, SWP_NOZORDER);
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

std::string control_text(HWND control) {
    std::array<char, longest_taken_text + 1> buffer{};
    GetWindowTextA(control, buffer.data(), static_cast<int>(buffer.size()));
    return buffer.data();
}

void post_page_changed() { PostMessageA(main_window, page_changed_message, 0, 0); }

bool reports(UINT message, WPARAM wparam, LPARAM lparam, HWND control, WORD notification) {
    return message == WM_COMMAND && reinterpret_cast<HWND>(lparam) == control &&
           HIWORD(wparam) == notification;
}

bool reports_press(UINT message, WPARAM wparam) {
    return message == WM_COMMAND && HIWORD(wparam) == BN_CLICKED;
}
