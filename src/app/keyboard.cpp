#include "app/keyboard.h"

#include "app/control_ids.h"
#include "app/main_window_state.h"

#include <algorithm>

namespace {

LRESULT dialog_code(HWND control) { return SendMessageA(control, WM_GETDLGCODE, 0, 0); }

void add_stop(std::vector<HWND>& stops, HWND control) {
    if (IsWindowVisible(control) && IsWindowEnabled(control) && (dialog_code(control) & DLGC_STATIC) == 0)
        stops.push_back(control);
}

void add_children(std::vector<HWND>& stops, HWND parent) {
    for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        add_stop(stops, child);
}

bool is_tab(HWND window, const MSG& message) {
    return message.message == WM_KEYDOWN && message.wParam == VK_TAB && GetKeyState(VK_CONTROL) >= 0 &&
           (message.hwnd == window || IsChild(window, message.hwnd));
}

/// As in a dialog, an edit control that is reached by Tab has its whole text selected.
void give_focus(HWND control) {
    if (dialog_code(control) & DLGC_HASSETSEL)
        SendMessageA(control, EM_SETSEL, 0, -1);
    SetFocus(control);
}

} // namespace

std::vector<HWND> focus_stops(HWND window) {
    std::vector<HWND> stops;
    const HWND tree = GetDlgItem(window, kTreeId);
    add_stop(stops, tree);
    for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        if (child != tree)
            add_children(stops, child);
    }
    for (const int id : {kTestConnectionId, kOkId, kCloseId})
        add_stop(stops, GetDlgItem(window, id));
    return stops;
}

bool move_focus(HWND window, const MSG& message) {
    if (!is_tab(window, message))
        return false;
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

void remember_focus(HWND window, WORD activation) {
    const HWND focus = GetFocus();
    if (activation == WA_INACTIVE && IsChild(window, focus))
        main_window_state.left_focus = focus;
}

void restore_focus(HWND window) {
    if (IsChild(window, main_window_state.left_focus))
        SetFocus(main_window_state.left_focus);
}
