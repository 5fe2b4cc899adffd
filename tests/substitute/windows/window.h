#pragma once
/// How the substitute keeps windows. Internal to the substitute: the program sees handles, tests use
/// substitute/control/user.h.
#include "substitute/windows/user.h"

#include <memory>
#include <string>
#include <vector>

namespace substitute {

struct WindowClass {
    std::string name;
    WNDCLASSEXA details{};
    bool of_system = false;
    int windows = 0;
};

/// The data of a control's procedure for one window.
struct ControlData {
    ControlData() = default;
    ControlData(const ControlData&) = delete;
    ControlData& operator=(const ControlData&) = delete;
    virtual ~ControlData() = default;
};

struct Window {
    HWND handle = nullptr;
    WindowClass* window_class = nullptr;
    WNDPROC procedure = nullptr;
    std::string text;
    DWORD style = 0;
    DWORD extended_style = 0;
    /// Outer frame; of a child in the client coordinates of its parent, else in those of the screen.
    RECT frame{};
    HWND parent = nullptr;
    HWND owner = nullptr;
    /// Children and siblings in z-order, topmost (and so first created) first.
    HWND first_child = nullptr;
    HWND last_child = nullptr;
    HWND next = nullptr;
    HWND previous = nullptr;
    LONG_PTR id = 0;
    LONG_PTR user_data = 0;
    HINSTANCE instance = nullptr;
    HFONT font = nullptr;
    /// An overlapped window learns its size only when it is first shown.
    bool needs_size = false;
    bool destroying = false;
    std::unique_ptr<ControlData> control;
};

/// The window behind `handle`, or null with ERROR_INVALID_WINDOW_HANDLE as last error. A pointer holds until
/// the next message is sent: its receiver may destroy the window.
Window* window_of(HWND handle);
/// The same for a window that is known to exist at this point.
Window& existing_window(HWND handle);
std::vector<HWND> children_of(HWND handle);
std::vector<HWND> top_level_windows();

Window& add_window();
void link_window(Window& window);
void unlink_window(Window& window);
void forget_window(HWND handle);

WindowClass* find_class(LPCSTR name);
inline bool is_child(const Window& window) { return (window.style & WS_CHILD) != 0; }
inline bool is_minimized(const Window& window) { return (window.style & WS_MINIMIZE) != 0; }
/// Its data, which the control's procedure made on WM_NCCREATE; null for a window of another class.
template <typename Data> Data* data_of(HWND handle) {
    Window* window = window_of(handle);
    return window == nullptr ? nullptr : dynamic_cast<Data*>(window->control.get());
}
/// Sends WM_COMMAND with the notification code to the parent of the control.
void notify_parent(HWND control, WORD code);

/// Size of the client area, whose origin lies at `client_offset` in the frame.
POINT client_size(const Window& window);
POINT client_offset(const Window& window);
/// Where the client area's origin lies on the screen.
POINT client_origin(const Window& window);
void send_size(HWND handle);
void send_move(HWND handle);

/// Takes focus, queued messages and active state away from a window that is being destroyed.
void leave_focus(HWND handle);
void drop_messages_of(HWND handle);
void activate(HWND handle, WPARAM how = WA_ACTIVE);
/// Notifies an active window that was restored after being minimised: first of the focus, then of the
/// activation.
void activate_restored(HWND handle);
/// Activates the window that contains `clicked`, and gives it the focus if another one has it.
void activate_by_click(HWND clicked);
HWND top_level_of(HWND handle);
/// A minimised window hands the focus to none of its controls.
bool is_in_minimized(HWND handle);
/// Whether neither the window nor one of its ancestors is disabled; only then can it get focus or clicks.
bool is_enabled_throughout(HWND handle);

} // namespace substitute
