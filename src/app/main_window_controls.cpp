#include "app/main_window_controls.h"

#include "pages/configuration.h"

#include <algorithm>

namespace {

constexpr Placement created_at{.width = 100, .height = 100};

constexpr ControlDescription tree{.window_class = "SysTreeView32",
                                  .style = WS_GROUP | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES |
                                           TVS_LINESATROOT | TVS_SHOWSELALWAYS,
                                  .extended_style = WS_EX_CLIENTEDGE,
                                  .identifier = tree_id,
                                  .placement = created_at,
                                  .has_stock_font = false,
                                  .failure = "Unable to create tree view"};

/// Its text is set with the first update of the buttons.
constexpr ControlDescription close_button{.window_class = "Button",
                                          .style = WS_GROUP | WS_TABSTOP,
                                          .identifier = close_id,
                                          .placement = created_at,
                                          .failure = "Unable to create cancel button"};

constexpr ControlDescription ok_button{.window_class = "Button",
                                       .text = "OK",
                                       .identifier = ok_id,
                                       .placement = created_at,
                                       .failure = "Unable to create ok button"};

constexpr ControlDescription test_connection_button{.window_class = "Button",
                                                    .text = "Test Connection",
                                                    .hidden = true,
                                                    .identifier = test_connection_id,
                                                    .placement = created_at,
                                                    .failure = "Unable to create test connection button"};

bool drags_left(WPARAM edge) { return edge == WMSZ_LEFT || edge == WMSZ_TOPLEFT || edge == WMSZ_BOTTOMLEFT; }
bool drags_right(WPARAM edge) {
    return edge == WMSZ_RIGHT || edge == WMSZ_TOPRIGHT || edge == WMSZ_BOTTOMRIGHT;
}
bool drags_top(WPARAM edge) { return edge == WMSZ_TOP || edge == WMSZ_TOPLEFT || edge == WMSZ_TOPRIGHT; }
bool drags_bottom(WPARAM edge) {
    return edge == WMSZ_BOTTOM || edge == WMSZ_BOTTOMLEFT || edge == WMSZ_BOTTOMRIGHT;
}

} // namespace

HWND create_tree(HWND window) { return create_control(window, tree); }

void create_buttons(HWND window) {
    for (const ControlDescription& button : {close_button, ok_button, test_connection_button})
        create_control(window, button);
}

Placement tree_placement(const RECT& client) {
    return {.x = 10, .y = 10, .width = client.right / 2 - 20, .height = client.bottom - 50};
}
Placement ok_placement(const RECT& client) {
    return {.x = client.right - 170, .y = client.bottom - 30, .width = 80, .height = 25};
}
Placement close_placement(const RECT& client) {
    return {.x = client.right - 85, .y = client.bottom - 30, .width = 80, .height = 25};
}
Placement test_connection_placement(const RECT& client) {
    return {.x = client.left + 5, .y = client.bottom - 30, .width = 120, .height = 25};
}

void keep_minimum_size(WPARAM edge, RECT& proposed) {
    const LONG missing_width = std::max<LONG>(0, minimum_width - (proposed.right - proposed.left));
    const LONG missing_height = std::max<LONG>(0, minimum_height - (proposed.bottom - proposed.top));
    if (drags_left(edge))
        proposed.left -= missing_width;
    if (drags_right(edge))
        proposed.right += missing_width;
    if (drags_top(edge))
        proposed.top -= missing_height;
    if (drags_bottom(edge))
        proposed.bottom += missing_height;
}

void lay_out(HWND window) {
    const RECT client = client_rectangle(window);
    place(GetDlgItem(window, tree_id), tree_placement(client));
    for (const auto& [name, configuration] : configurations) {
        if (configuration->shown_entry != nullptr)
            configuration->shown_entry->layout(window);
    }
    place(GetDlgItem(window, ok_id), ok_placement(client));
    place(GetDlgItem(window, close_id), close_placement(client));
    place(GetDlgItem(window, test_connection_id), test_connection_placement(client));
}
