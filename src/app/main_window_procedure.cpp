#include "app/main_window_procedure.h"

#include "app/buttons.h"
#include "app/commands.h"
#include "app/control_ids.h"
#include "app/group_tree.h"
#include "app/keyboard.h"
#include "app/main_window_state.h"
#include "app/window_layout.h"
#include "spec/configurations.h"
#include "window/guard.h"
#include "window/main_handle.h"

namespace {

LRESULT on_create(HWND window) {
    main_window_state = {};
    const HWND tree = create_tree(window);
    for (const auto& [name, configuration] : configurations)
        fill_tree(*configuration, tree);
    create_buttons(window);
    main_window_state.complete = true;
    // The first update is not left to the tree's first notification, whose time differs between systems.
    PostMessageA(window, page_changed_message, 0, 0);
    return 0;
}

/// The window may be closed from outside while a step is under way that goes on, such as the apply sequence:
/// what that step still does finds the values in the stores and no owner for its boxes.
void on_destroy(HWND window) {
    main_window_state.complete = false;
    for (const auto& [name, configuration] : configurations)
        leave_page(*configuration, window);
    main_window = nullptr;
    PostQuitMessage(0);
}

void offer_connection_test(HWND window, Configuration& selected) {
    const bool offered = selected.offersConnectionTest;
    const HWND button = GetDlgItem(window, kTestConnectionId);
    if (!offered)
        move_focus_off(window, button);
    ShowWindow(button, offered ? SW_SHOW : SW_HIDE);
    main_window_state.tested = offered ? &selected : nullptr;
}

void on_selection(HWND window, HWND tree) {
    const auto item = reinterpret_cast<HTREEITEM>(SendMessageA(tree, TVM_GETNEXTITEM, TVGN_CARET, 0));
    move_focus_off_page(window);
    for (const auto& [name, configuration] : configurations) {
        if (select_item(*configuration, window, item))
            offer_connection_test(window, *configuration);
    }
}

LRESULT on_notify(HWND window, const NMHDR& header) {
    if (!main_window_state.complete)
        return 0;
    if (header.idFrom == kTreeId && header.code == TVN_SELCHANGEDA)
        on_selection(window, header.hwndFrom);
    update_buttons(window);
    return 0;
}

/// The window itself has no use for the focus. It comes with it from a control when the window is restored,
/// and from elsewhere when the user comes back.
LRESULT on_focus(HWND window, HWND loser) {
    remember_focus(window, loser);
    restore_focus(window);
    return 0;
}

LRESULT on_command(HWND window, WPARAM wparam, LPARAM lparam) {
    const bool pressed = HIWORD(wparam) == BN_CLICKED;
    switch (pressed ? LOWORD(wparam) : 0) {
    case kCloseId: DestroyWindow(window); return 0;
    case kOkId: apply_and_close(window); return 0;
    case kTestConnectionId: test_connection(); return 0;
    default: return DefWindowProcA(window, WM_COMMAND, wparam, lparam);
    }
}

LRESULT handle_main_window(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
    case WM_CREATE: return on_create(window);
    case WM_SIZE: lay_out(window); return 0;
    case WM_SIZING: keep_minimum_size(wparam, *reinterpret_cast<RECT*>(lparam)); return TRUE;
    case WM_NOTIFY: return on_notify(window, *reinterpret_cast<const NMHDR*>(lparam));
    case WM_COMMAND: return on_command(window, wparam, lparam);
    case page_changed_message: update_buttons(window); return 0;
    case WM_CLOSE: DestroyWindow(window); return 0;
    case WM_DESTROY: on_destroy(window); return 0;
    case WM_ACTIVATE:
        if (LOWORD(wparam) == WA_INACTIVE)
            remember_focus(window, GetFocus());
        return DefWindowProcA(window, message, wparam, lparam);
    case WM_SETFOCUS: return on_focus(window, reinterpret_cast<HWND>(wparam));
    default: return DefWindowProcA(window, message, wparam, lparam);
    }
}

} // namespace

LRESULT CALLBACK main_window_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    return guarded_procedure<handle_main_window>(window, message, wparam, lparam);
}
