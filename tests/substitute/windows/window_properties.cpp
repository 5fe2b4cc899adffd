#include "substitute/calls.h"
#include "substitute/kernel/kernel.h"
#include "substitute/windows/window.h"
#include "substitute/windows/window_calls.h"

#include <algorithm>
#include <cstring>

namespace substitute {
namespace {

int copy_text(const std::string& text, LPSTR buffer, int capacity) {
    if (capacity <= 0)
        return 0;
    const auto length = std::min(text.size(), static_cast<std::size_t>(capacity - 1));
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
    return static_cast<int>(length);
}

LONG_PTR read_long(const Window& window, int index) {
    switch (index) {
    case GWL_STYLE: return static_cast<LONG_PTR>(window.style);
    case GWL_EXSTYLE: return static_cast<LONG_PTR>(window.extended_style);
    case GWLP_WNDPROC: return reinterpret_cast<LONG_PTR>(window.procedure);
    case GWLP_USERDATA: return window.user_data;
    default: SetLastError(ERROR_INVALID_INDEX); return 0;
    }
}

void write_long(Window& window, int index, LONG_PTR value) {
    switch (index) {
    case GWLP_WNDPROC: window.procedure = reinterpret_cast<WNDPROC>(value); break;
    case GWLP_USERDATA: window.user_data = value; break;
    default: SetLastError(ERROR_INVALID_INDEX); break;
    }
}

} // namespace

void notify_parent(HWND control, WORD code) {
    if (const Window* window = window_of(control)) {
        SendMessageA(window->parent, WM_COMMAND, MAKEWPARAM(static_cast<int>(window->id), code),
                     reinterpret_cast<LPARAM>(control));
    }
}

HWND dialog_item(HWND parent, int id) {
    for (const HWND child : children_of(parent)) {
        if (static_cast<int>(existing_window(child).id) == id)
            return child;
    }
    SetLastError(ERROR_CONTROL_ID_NOT_FOUND);
    return nullptr;
}

} // namespace substitute

using namespace substitute;

LONG_PTR GetWindowLongPtrA(HWND handle, int index) {
    if (failing("GetWindowLongPtrA", ERROR_INVALID_WINDOW_HANDLE))
        return 0;
    const Window* window = window_of(handle);
    return window == nullptr ? 0 : read_long(*window, index);
}

LONG_PTR SetWindowLongPtrA(HWND handle, int index, LONG_PTR value) {
    if (failing("SetWindowLongPtrA", ERROR_INVALID_WINDOW_HANDLE))
        return 0;
    Window* window = window_of(handle);
    if (window == nullptr)
        return 0;
    const LONG_PTR before = read_long(*window, index);
    write_long(*window, index, value);
    return before;
}

HWND GetParent(HWND handle) {
    const Window* window = window_of(handle);
    if (window == nullptr)
        return nullptr;
    return is_child(*window) ? window->parent : window->owner;
}

HWND GetWindow(HWND handle, UINT relation) {
    const Window* window = window_of(handle);
    if (window == nullptr)
        return nullptr;
    switch (relation) {
    case GW_HWNDNEXT: return window->next;
    case GW_OWNER: return window->owner;
    case GW_CHILD: return window->first_child;
    default: return (is_child(*window) ? children_of(window->parent) : top_level_windows()).front();
    }
}

HWND GetDlgItem(HWND parent, int id) {
    return failing("GetDlgItem", ERROR_CONTROL_ID_NOT_FOUND) ? nullptr : dialog_item(parent, id);
}

int GetDlgCtrlID(HWND handle) {
    const Window* window = window_of(handle);
    return window == nullptr ? 0 : static_cast<int>(window->id);
}

BOOL IsChild(HWND parent, HWND handle) {
    const Window* window = window_of(handle);
    while (window != nullptr && is_child(*window)) {
        if (window->parent == parent)
            return TRUE;
        window = window_of(window->parent);
    }
    return FALSE;
}

HWND FindWindowA(LPCSTR class_name, LPCSTR title) {
    for (const HWND each : top_level_windows()) {
        const Window& window = existing_window(each);
        if ((class_name == nullptr || window.window_class == find_class(class_name)) &&
            (title == nullptr || window.text == title))
            return each;
    }
    return nullptr;
}

int GetClassNameA(HWND handle, LPSTR buffer, int capacity) {
    const Window* window = window_of(handle);
    return window == nullptr ? 0 : copy_text(window->window_class->name, buffer, capacity);
}

BOOL SetWindowTextA(HWND handle, LPCSTR text) {
    if (failing("SetWindowTextA", ERROR_INVALID_WINDOW_HANDLE) || window_of(handle) == nullptr)
        return FALSE;
    return SendMessageA(handle, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) != 0;
}

int GetWindowTextA(HWND handle, LPSTR buffer, int capacity) {
    if (failing("GetWindowTextA", ERROR_INVALID_WINDOW_HANDLE) || window_of(handle) == nullptr)
        return copy_text({}, buffer, capacity);
    return static_cast<int>(
        SendMessageA(handle, WM_GETTEXT, static_cast<WPARAM>(capacity), reinterpret_cast<LPARAM>(buffer)));
}

int GetWindowTextLengthA(HWND handle) {
    if (failing("GetWindowTextLengthA", ERROR_INVALID_WINDOW_HANDLE) || window_of(handle) == nullptr)
        return 0;
    return static_cast<int>(SendMessageA(handle, WM_GETTEXTLENGTH, 0, 0));
}
