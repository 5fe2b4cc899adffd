#include "substitute/calls.h"
#include "substitute/kernel/kernel.h"
#include "substitute/windows/messages.h"
#include "substitute/windows/window.h"
#include "substitute/windows/window_calls.h"

namespace substitute {
namespace {

constexpr int default_position = 26;
constexpr int default_width = 640;
constexpr int default_height = 480;

DWORD settled_style(DWORD style) {
    if ((style & (WS_CHILD | WS_POPUP)) == 0) {
        style |= WS_CAPTION | WS_CLIPSIBLINGS;
    } else if ((style & WS_POPUP) != 0) {
        style |= WS_CLIPSIBLINGS;
    }
    return style & ~WS_VISIBLE;
}

DWORD settled_extended_style(DWORD extended_style, DWORD style) {
    const bool has_edge = (style & WS_THICKFRAME) != 0 || (extended_style & WS_EX_DLGMODALFRAME) != 0 ||
                          (style & (WS_CHILD | WS_DLGFRAME)) == WS_DLGFRAME;
    return has_edge ? extended_style | WS_EX_WINDOWEDGE : extended_style & ~WS_EX_WINDOWEDGE;
}

void settle_place(CREATESTRUCTA& create, DWORD style) {
    const bool overlapped = (style & (WS_CHILD | WS_POPUP)) == 0;
    if (create.x == CW_USEDEFAULT)
        create.x = create.y = overlapped ? default_position : 0;
    if (create.cx == CW_USEDEFAULT) {
        create.cx = overlapped ? default_width : 0;
        create.cy = overlapped ? default_height : 0;
    }
}

HWND make_window(const CREATESTRUCTA& create, WindowClass& window_class) {
    Window& window = add_window();
    window.window_class = &window_class;
    window.procedure = window_class.details.lpfnWndProc;
    window.instance = create.hInstance;
    window.style = settled_style(static_cast<DWORD>(create.style));
    window.extended_style = settled_extended_style(create.dwExStyle, window.style);
    window.needs_size = (window.style & (WS_CHILD | WS_POPUP)) == 0;
    (is_child(window) ? window.parent : window.owner) =
        is_child(window) ? create.hwndParent : top_level_of(create.hwndParent);
    window.id = is_child(window) ? reinterpret_cast<LONG_PTR>(create.hMenu) : 0;
    const int width = create.cx < 0 ? 0 : create.cx;
    const int height = create.cy < 0 ? 0 : create.cy;
    window.frame = {create.x, create.y, create.x + width, create.y + height};
    ++window_class.windows;
    link_window(window);
    return window.handle;
}

/// Notifies every ancestor that is itself a child of the creation or destruction of a child.
void notify_ancestors(HWND handle, UINT event) {
    const Window* window = window_of(handle);
    const WPARAM wparam =
        window == nullptr ? 0 : MAKEWPARAM(static_cast<int>(event), static_cast<int>(window->id));
    while (window != nullptr && is_child(*window)) {
        const HWND parent = window->parent;
        SendMessageA(parent, WM_PARENTNOTIFY, wparam, reinterpret_cast<LPARAM>(handle));
        window = window_of(parent);
    }
}

void destroy_rest(HWND handle) {
    for (const HWND child : children_of(handle))
        destroy_rest(child);
    drop_messages_of(handle);
    SendMessageA(handle, WM_NCDESTROY, 0, 0);
    Window& window = existing_window(handle);
    --window.window_class->windows;
    unlink_window(window);
    drop_messages_of(handle);
    forget_window(handle);
}

/// A window gets WM_DESTROY before its children.
void announce_destruction(HWND handle) {
    existing_window(handle).destroying = true;
    SendMessageA(handle, WM_DESTROY, 0, 0);
    for (const HWND child : children_of(handle)) {
        if (window_of(child) != nullptr)
            announce_destruction(child);
    }
}

bool run_creation(HWND handle, CREATESTRUCTA& create) {
    const auto lparam = reinterpret_cast<LPARAM>(&create);
    const bool accepted = SendMessageA(handle, WM_NCCREATE, 0, lparam) != 0 && IsWindow(handle) &&
                          SendMessageA(handle, WM_CREATE, 0, lparam) != -1;
    if (accepted || !IsWindow(handle))
        return accepted && IsWindow(handle);
    leave_focus(handle);
    destroy_rest(handle);
    return false;
}

/// What follows WM_CREATE.
HWND complete(HWND handle, DWORD style) {
    if (!existing_window(handle).needs_size) {
        send_size(handle);
        send_move(handle);
    }
    notify_ancestors(handle, WM_CREATE);
    if ((style & WS_VISIBLE) != 0)
        show_window(handle, SW_SHOW);
    return IsWindow(handle) ? handle : nullptr;
}

void destroy_owned(HWND owner) {
    for (const HWND each : top_level_windows()) {
        if (const Window* window = window_of(each); window != nullptr && window->owner == owner)
            destroy_window(each);
    }
}

HWND checked_create(const CREATESTRUCTA& request) {
    const auto style = static_cast<DWORD>(request.style);
    if (find_class(request.lpszClass) == nullptr)
        return refuse<HWND>(ERROR_CANNOT_FIND_WND_CLASS);
    if (request.hwndParent != nullptr && window_of(request.hwndParent) == nullptr)
        return nullptr;
    if ((style & WS_CHILD) != 0 && request.hwndParent == nullptr)
        return refuse<HWND>(ERROR_TLW_WITH_WSCHILD);
    return create_window(request);
}

} // namespace

HWND create_window(const CREATESTRUCTA& request) {
    CREATESTRUCTA create = request;
    const auto style = static_cast<DWORD>(create.style);
    settle_place(create, style);
    const HWND handle = make_window(create, *find_class(create.lpszClass));
    return run_creation(handle, create) ? complete(handle, style) : nullptr;
}

void destroy_window(HWND handle) {
    if (window_of(handle) == nullptr || existing_window(handle).destroying)
        return;
    notify_ancestors(handle, WM_DESTROY);
    if (IsWindow(handle))
        show_window(handle, SW_HIDE);
    if (IsWindow(handle) && !is_child(existing_window(handle)))
        destroy_owned(handle);
    if (!IsWindow(handle))
        return;
    leave_focus(handle);
    announce_destruction(handle);
    if (IsWindow(handle))
        destroy_rest(handle);
}

} // namespace substitute

using namespace substitute;

HWND CreateWindowExA(DWORD extended_style, LPCSTR class_name, LPCSTR title, DWORD style, int x, int y,
                     int width, int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID parameter) {
    if (failing("CreateWindowExA", ERROR_NOT_ENOUGH_MEMORY))
        return nullptr;
    return checked_create({parameter, instance, menu, parent, height, width, y, x, static_cast<LONG>(style),
                           title, class_name, extended_style});
}

BOOL DestroyWindow(HWND handle) {
    if (failing("DestroyWindow", ERROR_ACCESS_DENIED) || window_of(handle) == nullptr)
        return FALSE;
    deliver("DestroyWindow");
    destroy_window(handle);
    return TRUE;
}

BOOL IsWindow(HWND handle) { return window_of(handle) != nullptr; }
