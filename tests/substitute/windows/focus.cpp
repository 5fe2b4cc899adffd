#include "substitute/calls.h"
#include "substitute/control/user.h"
#include "substitute/windows/messages.h"
#include "substitute/windows/window.h"
#include "substitute/windows/window_calls.h"

#include <utility>

namespace substitute {
namespace {

struct Focus {
    HWND focus = nullptr;
    HWND active = nullptr;
    /// Which window was active when the user left for another program.
    HWND left = nullptr;
};

Focus& state() {
    static Focus instance;
    return instance;
}

const ResetHook reset_hook([] { state() = Focus{}; });

void move_focus(HWND handle) {
    const HWND before = state().focus;
    if (before == handle)
        return;
    state().focus = handle;
    if (before != nullptr && IsWindow(before))
        SendMessageA(before, WM_KILLFOCUS, reinterpret_cast<WPARAM>(handle), 0);
    if (handle != nullptr && state().focus == handle && IsWindow(handle))
        SendMessageA(handle, WM_SETFOCUS, reinterpret_cast<WPARAM>(before), 0);
}

/// The message contains whether the window is minimised.
void tell_activation(HWND handle, WPARAM how, HWND other) {
    if (const Window* window = handle == nullptr ? nullptr : window_of(handle)) {
        SendMessageA(handle, WM_ACTIVATE, MAKEWPARAM(static_cast<int>(how), is_minimized(*window) ? 1 : 0),
                     reinterpret_cast<LPARAM>(other));
    }
}

bool set_active(HWND handle, WPARAM how = WA_ACTIVE) {
    const HWND before = state().active;
    if (before == handle)
        return true;
    state().active = handle;
    tell_activation(before, WA_INACTIVE, handle);
    tell_activation(handle, how, before);
    return state().active == handle;
}

/// The window that becomes active when `leaving` is closed: its owner, or else the topmost possible one.
HWND successor_of(HWND leaving) {
    const auto fits = [leaving](HWND each) {
        const Window* window = window_of(each);
        return each != leaving && window != nullptr && (window->style & WS_VISIBLE) != 0 &&
               (window->style & WS_DISABLED) == 0;
    };
    if (const HWND owner = existing_window(leaving).owner; owner != nullptr && fits(owner))
        return owner;
    for (const HWND each : top_level_windows()) {
        if (fits(each))
            return each;
    }
    return nullptr;
}

} // namespace

HWND top_level_of(HWND handle) {
    const Window* window = window_of(handle);
    while (window != nullptr && is_child(*window)) {
        handle = window->parent;
        window = window_of(handle);
    }
    return handle;
}

bool is_in_minimized(HWND handle) {
    const Window* window = window_of(top_level_of(handle));
    return window != nullptr && is_minimized(*window);
}

bool is_enabled_throughout(HWND handle) {
    const Window* window = window_of(handle);
    while (window != nullptr && (window->style & WS_DISABLED) == 0 && is_child(*window))
        window = window_of(window->parent);
    return window != nullptr && (window->style & WS_DISABLED) == 0;
}

void activate(HWND handle, WPARAM how) {
    if (set_active(handle, how) && handle != nullptr && state().focus != handle &&
        !IsChild(handle, state().focus))
        move_focus(handle);
}

void activate_restored(HWND handle) {
    if (state().active != handle)
        return activate(handle);
    move_focus(handle);
    tell_activation(handle, WA_ACTIVE, nullptr);
}

void activate_by_click(HWND clicked) {
    if (top_level_of(clicked) != state().active)
        activate(top_level_of(clicked), WA_CLICKACTIVE);
}

void leave_program() {
    state().left = state().active;
    set_active(nullptr);
    move_focus(nullptr);
}

void return_to_program() {
    if (state().active == nullptr && IsWindow(state().left))
        activate(state().left);
}

void leave_focus(HWND handle) {
    const HWND focus = state().focus;
    if (state().active == handle)
        activate(successor_of(handle));
    if (state().focus == focus && focus != nullptr && (focus == handle || IsChild(handle, focus)))
        state().focus = nullptr;
}

HWND set_focus(HWND handle) {
    const HWND before = state().focus;
    if (handle != nullptr &&
        (window_of(handle) == nullptr || !is_enabled_throughout(handle) || is_in_minimized(handle)))
        return nullptr;
    if (handle != nullptr && !set_active(top_level_of(handle)))
        return nullptr;
    move_focus(handle);
    return before;
}

bool enable_window(HWND handle, bool enable) {
    Window* window = window_of(handle);
    if (window == nullptr)
        return false;
    const bool was_disabled = (window->style & WS_DISABLED) != 0;
    if (was_disabled != enable)
        return was_disabled;
    window->style = enable ? window->style & ~WS_DISABLED : window->style | WS_DISABLED;
    if (!enable && state().focus == handle)
        set_focus(nullptr);
    SendMessageA(handle, WM_ENABLE, enable ? TRUE : FALSE, 0);
    return was_disabled;
}

} // namespace substitute

using namespace substitute;

HWND SetFocus(HWND handle) {
    if (failing("SetFocus", ERROR_INVALID_WINDOW_HANDLE))
        return nullptr;
    deliver("SetFocus");
    return set_focus(handle);
}

HWND GetFocus() { return state().focus; }
HWND GetActiveWindow() { return state().active; }

BOOL EnableWindow(HWND handle, BOOL enable) {
    return !failing("EnableWindow", ERROR_INVALID_WINDOW_HANDLE) && enable_window(handle, enable != FALSE);
}

BOOL IsWindowEnabled(HWND handle) {
    const Window* window = window_of(handle);
    return window != nullptr && (window->style & WS_DISABLED) == 0;
}
