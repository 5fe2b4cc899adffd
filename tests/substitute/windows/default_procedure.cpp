#include "substitute/windows/window.h"
#include "substitute/windows/window_calls.h"

#include <algorithm>
#include <cstring>

namespace substitute {
namespace {

LRESULT read_text(const std::string& text, WPARAM capacity, LPARAM buffer) {
    if (capacity == 0)
        return 0;
    const std::size_t length = std::min<std::size_t>(text.size(), capacity - 1);
    auto* target = reinterpret_cast<char*>(buffer);
    std::memcpy(target, text.data(), length);
    target[length] = '\0';
    return static_cast<LRESULT>(length);
}

LRESULT set_text(Window& window, LPCSTR text) {
    window.text = text == nullptr ? "" : text;
    return TRUE;
}

LRESULT obey(HWND handle, WPARAM order) {
    switch (order) {
    case SC_CLOSE: return SendMessageA(handle, WM_CLOSE, 0, 0);
    case SC_MINIMIZE: show_window(handle, SW_MINIMIZE); return 0;
    case SC_RESTORE: show_window(handle, SW_RESTORE); return 0;
    default: return 0;
    }
}

LRESULT click_frame(HWND handle, WPARAM place) {
    switch (place) {
    case HTCLOSE: return SendMessageA(handle, WM_SYSCOMMAND, SC_CLOSE, 0);
    case HTMINBUTTON: return SendMessageA(handle, WM_SYSCOMMAND, SC_MINIMIZE, 0);
    default: return 0;
    }
}

LRESULT close(HWND handle) {
    destroy_window(handle);
    return 0;
}

LRESULT accept_activation(HWND handle, WPARAM wparam) {
    if (LOWORD(wparam) != WA_INACTIVE && !is_minimized(existing_window(handle)))
        set_focus(handle);
    return 0;
}

} // namespace
} // namespace substitute

using namespace substitute;

LRESULT DefWindowProcA(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    Window* window = window_of(handle);
    if (window == nullptr)
        return 0;
    switch (message) {
    case WM_NCCREATE: return set_text(*window, reinterpret_cast<LPCREATESTRUCTA>(lparam)->lpszName);
    case WM_SETTEXT: return set_text(*window, reinterpret_cast<LPCSTR>(lparam));
    case WM_GETTEXT: return read_text(window->text, wparam, lparam);
    case WM_GETTEXTLENGTH: return static_cast<LRESULT>(window->text.size());
    case WM_ACTIVATE: return accept_activation(handle, wparam);
    case WM_NCLBUTTONDOWN: return click_frame(handle, wparam);
    case WM_SYSCOMMAND: return obey(handle, wparam);
    case WM_CLOSE: return close(handle);
    case WM_QUERYENDSESSION: return TRUE;
    default: return 0;
    }
}

LRESULT CallWindowProcA(WNDPROC procedure, HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    return procedure == nullptr ? 0 : procedure(handle, message, wparam, lparam);
}
