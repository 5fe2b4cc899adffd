#include "app/buttons.h"

#include "app/control_ids.h"
#include "app/keyboard.h"
#include "app/main_window_state.h"
#include "spec/configurations.h"
#include "window/controls.h"

#include <string>

namespace {

constexpr Placement created_at{.width = 100, .height = 100};

constexpr ControlDescription tree_description{.window_class = "SysTreeView32",
                                              .style = WS_GROUP | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES |
                                                       TVS_LINESATROOT | TVS_SHOWSELALWAYS,
                                              .extended_style = WS_EX_CLIENTEDGE,
                                              .identifier = kTreeId,
                                              .placement = created_at,
                                              .has_stock_font = false,
                                              .failure = "Unable to create tree view"};
constexpr ControlDescription button_descriptions[] = {
    {.window_class = "Button",
     .style = WS_GROUP | WS_TABSTOP,
     .identifier = kCloseId,
     .placement = created_at,
     .failure = "Unable to create cancel button"},
    {.window_class = "Button",
     .text = "OK",
     .identifier = kOkId,
     .placement = created_at,
     .failure = "Unable to create ok button"},
    {.window_class = "Button",
     .text = "Test Connection",
     .hidden = true,
     .identifier = kTestConnectionId,
     .placement = created_at,
     .failure = "Unable to create test connection button"},
};

/// Every configuration is asked, since asking also takes the shown page's values.
bool any_configuration_has_changes() {
    bool changed = false;
    for (const auto& [name, configuration] : configurations)
        changed = configuration->has_changes() || changed;
    return changed;
}

} // namespace

HWND create_tree(HWND window) { return create_control(window, tree_description); }

void create_buttons(HWND window) {
    for (const ControlDescription& description : button_descriptions)
        create_control(window, description);
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
