#include "app/buttons.h"

#include "app/control_ids.h"
#include "app/keyboard.h"
#include "app/main_window_state.h"
#include "spec/configurations.h"
#include "window/guard.h"

#include <string>

namespace {

struct ControlKind {
    int id;
    DWORD extended_style;
    const char* class_name;
    const char* text;
    DWORD style;
    const char* failure;
};

constexpr ControlKind kTree{kTreeId,
                            WS_EX_CLIENTEDGE,
                            "SysTreeView32",
                            "",
                            WS_CHILD | WS_VISIBLE | WS_GROUP | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES |
                                TVS_LINESATROOT | TVS_SHOWSELALWAYS,
                            "Unable to create tree view"};
constexpr ControlKind kButtons[] = {
    {kCloseId, 0, "Button", "", WS_CHILD | WS_VISIBLE | WS_GROUP | WS_TABSTOP,
     "Unable to create cancel button"},
    {kOkId, 0, "Button", "OK", WS_CHILD | WS_VISIBLE, "Unable to create ok button"},
    {kTestConnectionId, 0, "Button", "Test Connection", WS_CHILD, "Unable to create test connection button"},
};

HWND create(HWND window, const ControlKind& kind) {
    const HWND control = CreateWindowExA(
        kind.extended_style, kind.class_name, kind.text, kind.style, 0, 0, 100, 100, window,
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(kind.id)), GetModuleHandleA(nullptr), nullptr);
    rethrow_kept();
    if (control == nullptr)
        throw std::string(kind.failure);
    return control;
}

/// Every configuration is asked, since asking also takes the shown page's values.
bool any_configuration_has_changes() {
    bool changed = false;
    for (const auto& [name, configuration] : configurations)
        changed = configuration->has_changes() || changed;
    return changed;
}

} // namespace

HWND create_tree(HWND window) { return create(window, kTree); }

void create_buttons(HWND window) {
    for (const ControlKind& kind : kButtons) {
        const HWND button = create(window, kind);
        SendMessageA(button, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
    }
}

void update_buttons(HWND window) {
    const bool changed = any_configuration_has_changes();
    if (changed == main_window_state.changed)
        return;
    // First of all: a button with a theme is painted within each change, and tells this window, which asks
    // again.
    main_window_state.changed = changed;
    const HWND ok = GetDlgItem(window, kOkId);
    if (!changed)
        move_focus_off(window, ok);
    EnableWindow(ok, changed ? TRUE : FALSE);
    SetWindowTextA(GetDlgItem(window, kCloseId), changed ? "Cancel" : "Close");
}
