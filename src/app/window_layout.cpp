#include "app/window_layout.h"

#include "app/control_ids.h"
#include "spec/configurations.h"

#include <algorithm>

namespace {

bool drags_left(WPARAM edge) { return edge == WMSZ_LEFT || edge == WMSZ_TOPLEFT || edge == WMSZ_BOTTOMLEFT; }
bool drags_right(WPARAM edge) {
    return edge == WMSZ_RIGHT || edge == WMSZ_TOPRIGHT || edge == WMSZ_BOTTOMRIGHT;
}
bool drags_top(WPARAM edge) { return edge == WMSZ_TOP || edge == WMSZ_TOPLEFT || edge == WMSZ_TOPRIGHT; }
bool drags_bottom(WPARAM edge) {
    return edge == WMSZ_BOTTOM || edge == WMSZ_BOTTOMLEFT || edge == WMSZ_BOTTOMRIGHT;
}

} // namespace

Placement tree_placement(const RECT& client) { return {10, 10, client.right / 2 - 20, client.bottom - 50}; }
Placement ok_placement(const RECT& client) { return {client.right - 170, client.bottom - 30, 80, 25}; }
Placement close_placement(const RECT& client) { return {client.right - 85, client.bottom - 30, 80, 25}; }
Placement test_connection_placement(const RECT& client) {
    return {client.left + 5, client.bottom - 30, 120, 25};
}

void keep_minimum_size(WPARAM edge, RECT& proposed) {
    const LONG missing_width = std::max<LONG>(0, kMinimumWidth - (proposed.right - proposed.left));
    const LONG missing_height = std::max<LONG>(0, kMinimumHeight - (proposed.bottom - proposed.top));
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
    place(GetDlgItem(window, kTreeId), tree_placement(client));
    for (const auto& [name, configuration] : configurations) {
        if (configuration->shown_entry != nullptr)
            configuration->shown_entry->layout(window);
    }
    place(GetDlgItem(window, kOkId), ok_placement(client));
    place(GetDlgItem(window, kCloseId), close_placement(client));
    place(GetDlgItem(window, kTestConnectionId), test_connection_placement(client));
}
