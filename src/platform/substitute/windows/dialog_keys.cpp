#include "platform/substitute/calls.h"
#include "platform/substitute/windows/window.h"
#include "platform/substitute/windows/window_calls.h"

#include <algorithm>

/// The keyboard navigation that IsDialogMessageA adds to any window: it is a "dialog" for this call only, so
/// the focus is moved here and not by the window.
namespace substitute {
namespace {

LRESULT dialog_code(HWND control, const MSG* message) {
    const WPARAM key = message == nullptr ? 0 : message->wParam;
    return SendMessageA(control, WM_GETDLGCODE, key, reinterpret_cast<LPARAM>(message));
}

bool is_reachable(HWND control) {
    const Window* window = window_of(control);
    return window != nullptr && (window->style & (WS_VISIBLE | WS_DISABLED)) == WS_VISIBLE;
}

bool is_tab_stop(HWND control) {
    return is_reachable(control) && (existing_window(control).style & WS_TABSTOP) != 0;
}

/// The controls in the order of the navigation: a container that says so is replaced by what it holds.
void collect(HWND parent, std::vector<HWND>& controls) {
    for (const HWND child : children_of(parent)) {
        if ((existing_window(child).extended_style & WS_EX_CONTROLPARENT) == 0) {
            controls.push_back(child);
        } else if (is_reachable(child)) {
            collect(child, controls);
        }
    }
}

/// The child of `parent` that `control` is, or that holds it.
HWND direct_control(HWND dialog, HWND control, const std::vector<HWND>& controls) {
    while (control != nullptr && control != dialog &&
           std::find(controls.begin(), controls.end(), control) == controls.end())
        control = GetParent(control);
    return control;
}

bool focus_next_tab_stop(HWND dialog) {
    const HWND focus = GetFocus();
    const bool backwards = GetKeyState(VK_SHIFT) < 0;
    const HWND next = GetNextDlgTabItem(dialog, focus == dialog ? nullptr : focus, backwards);
    if (next == nullptr)
        return false;
    if ((dialog_code(next, nullptr) & DLGC_HASSETSEL) != 0)
        SendMessageA(next, EM_SETSEL, 0, -1);
    set_focus(next);
    return true;
}

bool press_enter(HWND dialog) {
    const HWND focus = GetFocus();
    const bool is_default = focus != nullptr && (dialog_code(focus, nullptr) & DLGC_DEFPUSHBUTTON) != 0;
    const int id = is_default ? GetDlgCtrlID(focus) : IDOK;
    const HWND source = is_default ? focus : dialog_item(dialog, IDOK);
    SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(source));
    return true;
}

bool press_escape(HWND dialog) {
    const HWND source = dialog_item(dialog, IDCANCEL);
    SendMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(IDCANCEL), reinterpret_cast<LPARAM>(source));
    return true;
}

/// Whether the navigation takes the key. The arrows it asks the dialog to move by, and only a real dialog
/// does: here they are taken and lost.
bool handle_key(HWND dialog, const MSG& message) {
    const LRESULT code = dialog_code(message.hwnd, &message);
    if ((code & DLGC_WANTMESSAGE) != 0)
        return false;
    switch (static_cast<int>(message.wParam)) {
    case VK_TAB: return (code & DLGC_WANTTAB) == 0 && focus_next_tab_stop(dialog);
    case VK_LEFT:
    case VK_UP:
    case VK_RIGHT:
    case VK_DOWN: return (code & DLGC_WANTARROWS) == 0;
    case VK_ESCAPE: return press_escape(dialog);
    case VK_RETURN: return press_enter(dialog);
    default: return false;
    }
}

} // namespace
} // namespace substitute

using namespace substitute;

BOOL IsDialogMessageA(HWND dialog, LPMSG message) {
    if (failing("IsDialogMessageA", ERROR_INVALID_WINDOW_HANDLE) || window_of(dialog) == nullptr)
        return FALSE;
    if (message->hwnd != dialog && !IsChild(dialog, message->hwnd))
        return FALSE;
    if (message->message == WM_KEYDOWN && handle_key(dialog, *message))
        return TRUE;
    TranslateMessage(message);
    DispatchMessageA(message);
    return TRUE;
}

HWND GetNextDlgTabItem(HWND dialog, HWND control, BOOL previous) {
    std::vector<HWND> controls;
    collect(dialog, controls);
    if (controls.empty())
        return nullptr;
    const HWND own = direct_control(dialog, control, controls);
    const auto found = std::find(controls.begin(), controls.end(), own);
    const std::size_t count = controls.size();
    const std::size_t outside = previous != FALSE ? 0 : count - 1;
    const std::size_t start =
        found == controls.end() ? outside : static_cast<std::size_t>(found - controls.begin());
    for (std::size_t step = 1; step <= count; ++step) {
        const std::size_t index = (start + (previous != FALSE ? count - step : step)) % count;
        if (is_tab_stop(controls[index]))
            return controls[index];
    }
    return nullptr;
}
