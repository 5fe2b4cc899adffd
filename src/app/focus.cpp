#include "app/focus.h"

#include "app/main_window_controls.h"
#include "window/guard.h"
#include "window/top_level.h"

#include <algorithm>
#include <vector>

namespace {

LRESULT dialog_code(HWND control) { return SendMessageA(control, WM_GETDLGCODE, 0, 0); }

bool is_usable(HWND control) { return IsWindowVisible(control) && IsWindowEnabled(control); }

void add_stop(std::vector<HWND>& stops, HWND control) {
    if (is_usable(control) && (dialog_code(control) & DLGC_STATIC) == 0)
        stops.push_back(control);
}

void add_children(std::vector<HWND>& stops, HWND parent) {
    for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        add_stop(stops, child);
}

/// The controls that Tab visits, in order.
std::vector<HWND> focus_stops(HWND window) {
    std::vector<HWND> stops;
    const HWND tree = GetDlgItem(window, tree_id);
    add_stop(stops, tree);
    for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        if (child != tree)
            add_children(stops, child);
    }
    for (const int id : {test_connection_id, ok_id, close_id})
        add_stop(stops, GetDlgItem(window, id));
    return stops;
}

/// As in a dialog, an edit control that is reached by Tab has its whole text selected.
void give_focus(HWND control) {
    if (dialog_code(control) & DLGC_HASSETSEL)
        SendMessageA(control, EM_SETSEL, 0, -1);
    SetFocus(control);
}

bool move_to_next_stop(HWND window) {
    const std::vector<HWND> stops = focus_stops(window);
    if (stops.empty())
        return true;
    const auto count = static_cast<std::ptrdiff_t>(stops.size());
    const auto current = std::find(stops.begin(), stops.end(), GetFocus()) - stops.begin();
    const bool back = GetKeyState(VK_SHIFT) < 0;
    const std::ptrdiff_t first = back ? count - 1 : 0;
    const std::ptrdiff_t next = current == count ? first : (current + (back ? count - 1 : 1)) % count;
    give_focus(stops[static_cast<std::size_t>(next)]);
    return true;
}

/// A key that is held down presses only once: its repetitions would answer the box that the button opens, and
/// press again.
bool press_button(HWND control, LPARAM key_state) {
    if ((dialog_code(control) & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) == 0)
        return false;
    constexpr LPARAM was_down = 1 << 30;
    if ((key_state & was_down) == 0)
        SendMessageA(control, BM_CLICK, 0, 0);
    return true;
}

/// The keys that a control handles itself can depend on its state, such as an open list.
bool wants_key(const MSG& message) {
    const LRESULT code =
        SendMessageA(message.hwnd, WM_GETDLGCODE, message.wParam, reinterpret_cast<LPARAM>(&message));
    return (code & DLGC_WANTMESSAGE) != 0;
}

/// Enter that presses no button is dropped, as in a dialog: an edit control would beep.
bool handle_enter(const MSG& message) {
    return press_button(message.hwnd, message.lParam) || !wants_key(message);
}

bool wants_arrows(HWND control) { return (dialog_code(control) & (DLGC_WANTARROWS | DLGC_WANTALLKEYS)) != 0; }

} // namespace

bool handle_key(HWND window, const MSG& message) {
    if (message.message != WM_KEYDOWN || (message.hwnd != window && !IsChild(window, message.hwnd)))
        return false;
    switch (message.wParam) {
    case VK_TAB: return GetKeyState(VK_CONTROL) >= 0 && move_to_next_stop(window);
    case VK_RETURN: return handle_enter(message);
    case VK_LEFT:
    case VK_UP:
    case VK_RIGHT:
    case VK_DOWN: return !wants_arrows(message.hwnd);
    default: return false;
    }
}

/// Windows asks this hook from within the loops of boxes and dialogs.
LRESULT CALLBACK filter_keys(int code, WPARAM wparam, LPARAM lparam) noexcept {
    const auto pass_on = [&] { return CallNextHookEx(nullptr, code, wparam, lparam); };
    const auto filter = [&]() -> LRESULT {
        const bool taken = code == MSGF_DIALOGBOX && IsWindowEnabled(main_window) &&
                           handle_key(main_window, *reinterpret_cast<const MSG*>(lparam));
        return taken ? TRUE : pass_on();
    };
    return guarded(TRUE, filter, pass_on);
}

KeysBesideBoxes::KeysBesideBoxes()
    : hook_(SetWindowsHookExA(WH_MSGFILTER, filter_keys, nullptr, GetCurrentThreadId())) {}

KeysBesideBoxes::~KeysBesideBoxes() {
    if (hook_ != nullptr)
        UnhookWindowsHookEx(hook_);
}

void restore_focus(HWND window, HWND left) {
    if (left == nullptr)
        return;
    const bool still_there = IsChild(window, left) && is_usable(left);
    SetFocus(still_there ? left : GetDlgItem(window, tree_id));
}

void move_focus_off(HWND window, HWND control) {
    if (GetFocus() == control)
        SetFocus(GetDlgItem(window, tree_id));
}

void move_focus_off_page(HWND window) {
    const HWND focus = GetFocus();
    if (IsChild(window, focus) && GetParent(focus) != window)
        SetFocus(GetDlgItem(window, tree_id));
}
