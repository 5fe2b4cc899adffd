#include "substitute/calls.h"
#include "substitute/windows/messages.h"
#include "substitute/windows/window.h"
#include "substitute/windows/window_calls.h"

#include <algorithm>

namespace substitute {
namespace {

constexpr LONG caption_height = 18;
constexpr LONG minimum_track_width = 116;
constexpr LONG minimum_track_height = 27;

/// Thickness of the frame around the client area, the caption not counted.
LONG frame_width(const Window& window) {
    LONG width = 0;
    if ((window.extended_style & (WS_EX_WINDOWEDGE | WS_EX_DLGMODALFRAME)) != 0 &&
        (window.style & (WS_DLGFRAME | WS_THICKFRAME)) != 0) {
        width += 3;
    } else if ((window.style & WS_BORDER) != 0) {
        width += 1;
    }
    if ((window.style & WS_THICKFRAME) != 0)
        width += 1;
    if ((window.extended_style & WS_EX_CLIENTEDGE) != 0)
        width += 2;
    return width;
}

LONG width_of(const RECT& rectangle) { return rectangle.right - rectangle.left; }
LONG height_of(const RECT& rectangle) { return rectangle.bottom - rectangle.top; }

/// The frame after the move that `position` describes. A window that the user may size is never smaller than
/// the system's minimum.
RECT moved(const Window& window, const WINDOWPOS& position) {
    const RECT& now = window.frame;
    const bool keeps_size = (position.flags & SWP_NOSIZE) != 0;
    const bool keeps_place = (position.flags & SWP_NOMOVE) != 0;
    const bool has_minimum = (window.style & WS_THICKFRAME) != 0 && !is_child(window);
    const LONG width = std::max(position.cx, has_minimum ? minimum_track_width : 0);
    const LONG height = std::max(position.cy, has_minimum ? minimum_track_height : 0);
    const LONG left = keeps_place ? now.left : position.x;
    const LONG top = keeps_place ? now.top : position.y;
    return {left, top, left + (keeps_size ? width_of(now) : width),
            top + (keeps_size ? height_of(now) : height)};
}

void place(HWND handle, const RECT& frame) {
    Window& window = existing_window(handle);
    const POINT before = client_size(window);
    const bool has_moved = window.frame.left != frame.left || window.frame.top != frame.top;
    window.frame = frame;
    const POINT after = client_size(window);
    if (has_moved)
        send_move(handle);
    if ((before.x != after.x || before.y != after.y) && IsWindow(handle))
        send_size(handle);
}

void set_visible(HWND handle, bool visible) {
    SendMessageA(handle, WM_SHOWWINDOW, visible ? TRUE : FALSE, 0);
    Window* window = window_of(handle);
    if (window == nullptr)
        return;
    window->style = visible ? window->style | WS_VISIBLE : window->style & ~WS_VISIBLE;
}

/// A hidden window hands the focus to its parent; a hidden top-level window hands it to another one.
void hide(HWND handle) {
    set_visible(handle, false);
    const Window* window = window_of(handle);
    if (window == nullptr)
        return;
    if (!is_child(*window)) {
        leave_focus(handle);
    } else if (GetFocus() == handle) {
        set_focus(window->parent);
    }
}

void minimize(HWND handle) {
    existing_window(handle).style |= WS_MINIMIZE;
    SendMessageA(handle, WM_SIZE, SIZE_MINIMIZED, 0);
}

void restore(HWND handle) {
    existing_window(handle).style &= ~WS_MINIMIZE;
    send_move(handle);
    if (IsWindow(handle))
        send_size(handle);
    if (IsWindow(handle))
        activate_restored(handle);
}

void show(HWND handle, bool with_activation) {
    set_visible(handle, true);
    if (!IsWindow(handle))
        return;
    if (with_activation && !is_child(existing_window(handle)))
        activate(handle);
    if (Window* window = window_of(handle); window != nullptr && window->needs_size) {
        window->needs_size = false;
        send_size(handle);
        send_move(handle);
    }
}

} // namespace

POINT client_offset(const Window& window) {
    const LONG width = frame_width(window);
    const bool has_caption = (window.style & WS_CAPTION) == WS_CAPTION && !is_child(window);
    return {width, width + (has_caption ? caption_height + 1 : 0)};
}

POINT client_size(const Window& window) {
    if (is_minimized(window))
        return {0, 0};
    const POINT offset = client_offset(window);
    const LONG width = width_of(window.frame) - 2 * offset.x;
    const LONG height = height_of(window.frame) - offset.y - offset.x;
    return {std::max(width, 0), std::max(height, 0)};
}

POINT client_origin(const Window& window) {
    const POINT offset = client_offset(window);
    const POINT base = is_child(window) ? client_origin(existing_window(window.parent)) : POINT{0, 0};
    return {base.x + window.frame.left + offset.x, base.y + window.frame.top + offset.y};
}

void send_size(HWND handle) {
    const POINT size = client_size(existing_window(handle));
    SendMessageA(handle, WM_SIZE, SIZE_RESTORED, MAKELPARAM(size.x, size.y));
}

void send_move(HWND handle) {
    if (const Window* window = window_of(handle)) {
        const POINT offset = client_offset(*window);
        SendMessageA(handle, WM_MOVE, 0,
                     MAKELPARAM(window->frame.left + offset.x, window->frame.top + offset.y));
    }
}

bool set_window_pos(HWND handle, int x, int y, int width, int height, UINT flags) {
    if (window_of(handle) == nullptr)
        return false;
    WINDOWPOS position{handle, nullptr, x, y, width, height, flags};
    SendMessageA(handle, WM_WINDOWPOSCHANGING, 0, reinterpret_cast<LPARAM>(&position));
    if (!IsWindow(handle))
        return true;
    place(handle, moved(existing_window(handle), position));
    if ((flags & SWP_SHOWWINDOW) != 0)
        show_window(handle, (flags & SWP_NOACTIVATE) != 0 ? SW_SHOWNA : SW_SHOW);
    if ((flags & SWP_HIDEWINDOW) != 0)
        show_window(handle, SW_HIDE);
    return true;
}

bool show_window(HWND handle, int command) {
    const Window* window = window_of(handle);
    if (window == nullptr)
        return false;
    const bool was_visible = (window->style & WS_VISIBLE) != 0;
    const bool was_minimized = is_minimized(*window);
    if (command == SW_HIDE && was_visible)
        hide(handle);
    if (command != SW_HIDE && !was_visible)
        show(handle, command != SW_SHOWNA && command != SW_SHOWNOACTIVATE);
    if (command == SW_MINIMIZE && was_visible && !was_minimized)
        minimize(handle);
    if (command == SW_RESTORE && was_visible && was_minimized)
        restore(handle);
    return was_visible;
}

} // namespace substitute

using namespace substitute;

BOOL SetWindowPos(HWND handle, HWND, int x, int y, int width, int height, UINT flags) {
    return !failing("SetWindowPos", ERROR_INVALID_WINDOW_HANDLE) &&
           set_window_pos(handle, x, y, width, height, flags);
}

BOOL MoveWindow(HWND handle, int x, int y, int width, int height, BOOL) {
    return !failing("MoveWindow", ERROR_INVALID_WINDOW_HANDLE) &&
           set_window_pos(handle, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

BOOL GetClientRect(HWND handle, LPRECT rectangle) {
    if (failing("GetClientRect", ERROR_INVALID_WINDOW_HANDLE))
        return FALSE;
    const Window* window = window_of(handle);
    if (window == nullptr)
        return FALSE;
    const POINT size = client_size(*window);
    *rectangle = {0, 0, size.x, size.y};
    return TRUE;
}

BOOL GetWindowRect(HWND handle, LPRECT rectangle) {
    if (failing("GetWindowRect", ERROR_INVALID_WINDOW_HANDLE))
        return FALSE;
    const Window* window = window_of(handle);
    if (window == nullptr)
        return FALSE;
    const POINT base = is_child(*window) ? client_origin(existing_window(window->parent)) : POINT{0, 0};
    const RECT& frame = window->frame;
    *rectangle = {frame.left + base.x, frame.top + base.y, frame.right + base.x, frame.bottom + base.y};
    return TRUE;
}

int MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count) {
    const Window* source = from == nullptr ? nullptr : window_of(from);
    const Window* target = to == nullptr ? nullptr : window_of(to);
    const POINT start = source == nullptr ? POINT{0, 0} : client_origin(*source);
    const POINT end = target == nullptr ? POINT{0, 0} : client_origin(*target);
    for (UINT index = 0; index < count; ++index)
        points[index] = {points[index].x + start.x - end.x, points[index].y + start.y - end.y};
    return MAKELONG(start.x - end.x, start.y - end.y);
}

BOOL ShowWindow(HWND handle, int command) {
    if (failing("ShowWindow", ERROR_INVALID_WINDOW_HANDLE))
        return FALSE;
    deliver("ShowWindow");
    return show_window(handle, command);
}

/// Nothing is painted, so nothing is waiting to be.
BOOL UpdateWindow(HWND handle) {
    return !failing("UpdateWindow", ERROR_INVALID_WINDOW_HANDLE) && window_of(handle) != nullptr;
}

BOOL IsWindowVisible(HWND handle) {
    const Window* window = window_of(handle);
    while (window != nullptr && (window->style & WS_VISIBLE) != 0 && is_child(*window))
        window = window_of(window->parent);
    return window != nullptr && (window->style & WS_VISIBLE) != 0;
}
