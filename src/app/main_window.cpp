#include "app/main_window.h"

#include "app/apply_changes.h"
#include "app/focus.h"
#include "app/group_tree.h"
#include "app/main_window_controls.h"
#include "app/test_connection.h"
#include "base/trace.h"
#include "pages/configuration.h"
#include "window/boxes.h"
#include "window/guard.h"
#include "window/top_level.h"

#include <string>
#include <utility>

namespace {

constexpr char class_name[] = "trconfigclass";
/// The bits of a system menu command; the system uses the others.
constexpr WPARAM system_order = 0xFFF0;

/// The state of the main window between messages; reset for each main window.
struct State {
    /// The configuration whose node is selected, if it offers a connection test.
    Configuration* tested = nullptr;
    /// Whether the buttons show that there are changes. True at first, so that the first update without
    /// changes writes "Close".
    bool changed = true;
    /// The control that had the keyboard focus when the focus last went to the window itself or to another
    /// window.
    HWND left_focus = nullptr;
    /// The shown page is being replaced, and meanwhile another item was selected.
    bool selecting = false;
    bool selections_left = false;
    /// OK's sequence is running.
    bool applying = false;
    /// Tree and buttons exist. Before that, there is nothing to update.
    bool complete = false;
};

State state;

LRESULT on_create(HWND window) {
    state = {};
    const HWND tree = create_tree(window);
    for (const auto& [name, configuration] : configurations)
        fill_tree(*configuration, tree);
    create_buttons(window);
    state.complete = true;
    // The tree's first notification would also update the buttons, but systems send it at different moments.
    PostMessageA(window, page_changed_message, 0, 0);
    return 0;
}

void leave_pages(HWND window) {
    for (const auto& [name, configuration] : configurations)
        leave_page(*configuration, window);
}

/// Another program may close the window while a step such as a scan is running. The rest of that step finds
/// the values in the stores, and its boxes have no owner.
LRESULT on_destroy(HWND window) {
    state.complete = false;
    leave_pages(window);
    main_window = nullptr;
    PostQuitMessage(0);
    return 0;
}

/// Queries every configuration, because the query also takes the shown page's values.
bool any_configuration_has_changes() {
    bool changed = false;
    for (const auto& [name, configuration] : configurations)
        changed = configuration->has_changes() || changed;
    return changed;
}

/// Updates OK and Close/Cancel: they depend on whether any configuration has unsaved changes.
LRESULT update_buttons(HWND window) {
    const bool changed = any_configuration_has_changes();
    if (changed == state.changed)
        return 0;
    // Recorded first: a button with a theme is painted during each change and notifies this window, which
    // would start the change again.
    state.changed = changed;
    const HWND ok = GetDlgItem(window, ok_id);
    if (!changed)
        move_focus_off(window, ok);
    EnableWindow(ok, changed ? TRUE : FALSE);
    SetWindowTextA(GetDlgItem(window, close_id), changed ? "Cancel" : "Close");
    return 0;
}

void offer_connection_test(HWND window, Configuration& selected) {
    const bool offered = selected.offersConnectionTest;
    const HWND button = GetDlgItem(window, test_connection_id);
    if (!offered)
        move_focus_off(window, button);
    ShowWindow(button, offered ? SW_SHOW : SW_HIDE);
    state.tested = offered ? &selected : nullptr;
}

void show_selected(HWND window, HWND tree) {
    move_focus_off_page(window);
    leave_pages(window);
    // The window may have been closed while the controls were destroyed.
    if (!state.complete)
        return;
    const auto item = reinterpret_cast<HTREEITEM>(SendMessageA(tree, TVM_GETNEXTITEM, TVGN_CARET, 0));
    for (const auto& [name, configuration] : configurations) {
        if (select_item(*configuration, window, item))
            offer_connection_test(window, *configuration);
    }
}

/// Showing or destroying a page moves the focus and may activate another window. Meanwhile, the system may
/// report another selection: its page is shown when this one is complete.
void on_selection(HWND window, HWND tree) {
    state.selections_left = true;
    if (std::exchange(state.selecting, true))
        return;
    while (std::exchange(state.selections_left, false) && state.complete)
        show_selected(window, tree);
    state.selecting = false;
}

LRESULT on_notify(HWND window, const NMHDR& header) {
    if (!state.complete)
        return 0;
    if (header.idFrom == tree_id && header.code == TVN_SELCHANGEDA)
        on_selection(window, header.hwndFrom);
    return update_buttons(window);
}

/// Exists while OK's sequence is running: the service may be stopped and the values not yet written. Until
/// the sequence ends, nothing ends the program: no request to close, no end of the session, and no quit
/// message, which would answer a box in the user's place.
class Applying {
public:
    explicit Applying(HWND window) : window_(window) {
        state.applying = true;
        ShutdownBlockReasonCreate(window,
                                  L"Settings are being saved and the agent's service is being restarted.");
    }
    Applying(const Applying&) = delete;
    Applying& operator=(const Applying&) = delete;
    ~Applying() {
        ShutdownBlockReasonDestroy(window_);
        state.applying = false;
    }

private:
    HWND window_;
    StandingBoxes until_answered_;
};

void apply_all() {
    for (const auto& [name, configuration] : configurations)
        apply_changes(*configuration);
}

LRESULT on_ok(HWND window) {
    EnableWindow(window, FALSE);
    {
        const Applying applying(window);
        apply_all();
    }
    DestroyWindow(window);
    return 0;
}

LRESULT on_test_connection() {
    if (state.tested != nullptr)
        testConnection(*state.tested);
    return 0;
}

LRESULT on_command(HWND window, WPARAM wparam, LPARAM lparam) {
    const bool pressed = HIWORD(wparam) == BN_CLICKED && !state.applying;
    switch (pressed ? LOWORD(wparam) : 0) {
    case close_id: DestroyWindow(window); return 0;
    case ok_id: return on_ok(window);
    case test_connection_id: return on_test_connection();
    default: return DefWindowProcA(window, WM_COMMAND, wparam, lparam);
    }
}

/// The system notifies only windows without a parent of new colours; the common controls need the message
/// too.
LRESULT on_colours(HWND window, WPARAM wparam, LPARAM lparam) {
    tell_children(window, WM_SYSCOLORCHANGE, wparam, lparam);
    return DefWindowProcA(window, WM_SYSCOLORCHANGE, wparam, lparam);
}

LRESULT on_close(HWND window) {
    if (!state.applying)
        DestroyWindow(window);
    return 0;
}

void remember_focus(HWND window, HWND control) {
    if (IsChild(window, control))
        state.left_focus = control;
}

LRESULT on_activation(HWND window, WPARAM wparam, LPARAM lparam) {
    if (LOWORD(wparam) == WA_INACTIVE)
        remember_focus(window, GetFocus());
    return DefWindowProcA(window, WM_ACTIVATE, wparam, lparam);
}

/// Passes the focus on to a control. The window gets it when it is restored and when the user returns from
/// another program.
LRESULT on_focus(HWND window, HWND loser) {
    remember_focus(window, loser);
    restore_focus(window, state.left_focus);
    return 0;
}

/// Remembers the focused control, because the system removes the focus from it when it minimises the window.
LRESULT on_order(HWND window, WPARAM order, LPARAM lparam) {
    if ((order & system_order) == SC_MINIMIZE)
        remember_focus(window, GetFocus());
    return DefWindowProcA(window, WM_SYSCOMMAND, order, lparam);
}

/// A minimised window may get the focus and cannot pass it on to a control. When it is restored, it already
/// has the focus, and the system does not notify it again.
LRESULT on_size(HWND window, WPARAM how) {
    lay_out(window);
    if (how != SIZE_MINIMIZED && GetFocus() == window)
        restore_focus(window, state.left_focus);
    return 0;
}

LRESULT on_sizing(WPARAM edge, RECT& proposed) {
    keep_minimum_size(edge, proposed);
    return TRUE;
}

LRESULT handle_main_window(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
    case WM_CREATE: return on_create(window);
    case WM_SIZE: return on_size(window, wparam);
    case WM_SIZING: return on_sizing(wparam, *reinterpret_cast<RECT*>(lparam));
    case WM_NOTIFY: return on_notify(window, *reinterpret_cast<const NMHDR*>(lparam));
    case WM_COMMAND: return on_command(window, wparam, lparam);
    case page_changed_message: return update_buttons(window);
    case WM_SYSCOMMAND: return on_order(window, wparam, lparam);
    case WM_ACTIVATE: return on_activation(window, wparam, lparam);
    case WM_SETFOCUS: return on_focus(window, reinterpret_cast<HWND>(wparam));
    case WM_SYSCOLORCHANGE: return on_colours(window, wparam, lparam);
    case WM_CLOSE: return on_close(window);
    case WM_QUERYENDSESSION: return state.applying ? FALSE : TRUE;
    case WM_DESTROY: return on_destroy(window);
    default: return DefWindowProcA(window, message, wparam, lparam);
    }
}

} // namespace

void register_main_window_class(HINSTANCE instance) {
    if (!register_window_class(instance, class_name, guarded_procedure<handle_main_window>))
        throw std::string("Window Registration Failed!");
}

void open_main_window(HINSTANCE instance, int show_command) {
    main_window =
        CreateWindowExA(0, class_name, "Tavrin Configuration", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                        CW_USEDEFAULT, minimum_width, minimum_height, nullptr, nullptr, instance, nullptr);
    rethrow_kept();
    if (main_window == nullptr)
        throw std::string("Window Creation Failed!");
    trace("Created Window\n");
    ShowWindow(main_window, show_command);
    rethrow_kept();
    trace("Showed Window\n");
    UpdateWindow(main_window);
    rethrow_kept();
    trace("Updated Window\n");
}
