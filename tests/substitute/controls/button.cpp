#include "substitute/controls/controls.h"
#include "substitute/windows/window.h"
#include "substitute/windows/window_calls.h"

namespace substitute {
namespace {

struct ButtonData : ControlData {
    WPARAM check = BST_UNCHECKED;
    bool pushed = false;
};

DWORD kind_of(HWND handle) { return existing_window(handle).style & BS_TYPEMASK; }

LRESULT create(HWND handle) {
    existing_window(handle).control = std::make_unique<ButtonData>();
    return 0;
}

LRESULT dialog_code(HWND handle) {
    switch (kind_of(handle)) {
    case BS_PUSHBUTTON: return DLGC_BUTTON | DLGC_UNDEFPUSHBUTTON;
    case BS_GROUPBOX: return DLGC_STATIC;
    default: return DLGC_BUTTON;
    }
}

void set_check(HWND handle, WPARAM check) {
    if (kind_of(handle) == BS_AUTOCHECKBOX)
        data_of<ButtonData>(handle)->check = check;
}

/// Key or mouse button goes down; the click counts when it comes up while the button is still held.
LRESULT push(HWND handle, bool with_mouse) {
    if (with_mouse)
        set_focus(handle);
    if (auto* data = data_of<ButtonData>(handle))
        data->pushed = true;
    return 0;
}

LRESULT release(HWND handle) {
    auto* data = data_of<ButtonData>(handle);
    if (data == nullptr || !data->pushed)
        return 0;
    data->pushed = false;
    if (kind_of(handle) == BS_AUTOCHECKBOX)
        data->check = data->check == BST_CHECKED ? BST_UNCHECKED : BST_CHECKED;
    notify_parent(handle, BN_CLICKED);
    return 0;
}

LRESULT click(HWND handle) {
    SendMessageA(handle, WM_LBUTTONDOWN, 0, 0);
    SendMessageA(handle, WM_LBUTTONUP, 0, 0);
    return 0;
}

} // namespace

LRESULT button_procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_CREATE)
        return create(handle);
    auto* data = data_of<ButtonData>(handle);
    if (data == nullptr)
        return DefWindowProcA(handle, message, wparam, lparam);
    switch (message) {
    case WM_GETDLGCODE: return dialog_code(handle);
    case WM_LBUTTONDOWN: return push(handle, true);
    case WM_LBUTTONUP: return release(handle);
    case WM_KEYDOWN: return wparam == VK_SPACE ? push(handle, false) : 0;
    case WM_KEYUP: return wparam == VK_SPACE ? release(handle) : 0;
    case WM_KILLFOCUS: data->pushed = false; return 0;
    case WM_SETFONT: existing_window(handle).font = reinterpret_cast<HFONT>(wparam); return 0;
    case WM_GETFONT: return reinterpret_cast<LRESULT>(existing_window(handle).font);
    case BM_CLICK: return click(handle);
    case BM_GETCHECK: return static_cast<LRESULT>(data->check);
    case BM_SETCHECK: set_check(handle, wparam); return 0;
    default: return DefWindowProcA(handle, message, wparam, lparam);
    }
}

} // namespace substitute
