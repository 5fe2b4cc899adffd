#include "substitute/controls/tree_view.h"
#include "substitute/windows/window_calls.h"

/// The places of a tree view's items, and the effect of clicks on them. Nothing is scrolled: the first item
/// is always at the top.
namespace substitute {
namespace {

constexpr int row_height = 16;
constexpr int indent_width = 19;
constexpr int character_width = 6;

int depth_of(const TreeItems& items, const TreeItem& item) {
    int depth = 0;
    for (const TreeItem* above = items.find(item.parent); above != nullptr; above = items.find(above->parent))
        ++depth;
    return depth;
}

/// The button that opens and closes the item is left of the text.
int text_left(const TreeItems& items, const TreeItem& item) {
    return indent_width * (depth_of(items, item) + 1);
}

int text_right(const TreeItems& items, const TreeItem& item) {
    return text_left(items, item) + character_width * static_cast<int>(item.text.size()) + 4;
}

HTREEITEM item_in_row(const TreeItems& items, int row) {
    HTREEITEM item = items.first_root();
    while (item != nullptr && row-- > 0)
        item = items.visible_after(item);
    return item;
}

/// -1 for an item inside a closed one.
int row_of(const TreeItems& items, HTREEITEM wanted) {
    int row = 0;
    for (HTREEITEM item = items.first_root(); item != nullptr; item = items.visible_after(item), ++row) {
        if (item == wanted)
            return row;
    }
    return -1;
}

void take_click(HWND handle, HTREEITEM clicked, int x) {
    const TreeItems& items = tree_data(handle).items;
    const TreeItem& item = *items.find(clicked);
    const int left = text_left(items, item);
    if (x >= left - indent_width && x < left) {
        expand_tree_item(handle, item.expanded ? TVE_COLLAPSE : TVE_EXPAND, clicked);
    } else if (x >= left && x < text_right(items, item)) {
        select_tree_item(handle, clicked, TVC_BYMOUSE);
    }
}

} // namespace

/// The tree takes the focus only when the click has done its work, the change of the selection included.
LRESULT take_tree_click(HWND handle, LPARAM where) {
    const TreeItems& items = tree_data(handle).items;
    const HTREEITEM clicked = item_in_row(items, HIWORD(static_cast<ULONG_PTR>(where)) / row_height);
    notify_parent_of_tree(handle, NM_CLICK);
    if (IsWindow(handle) && clicked != nullptr && tree_data(handle).items.find(clicked) != nullptr)
        take_click(handle, clicked, LOWORD(static_cast<ULONG_PTR>(where)));
    if (IsWindow(handle))
        set_focus(handle);
    return 0;
}

LRESULT item_rectangle(HWND handle, bool of_text, LPARAM lparam) {
    auto& rectangle = *reinterpret_cast<RECT*>(lparam);
    const HTREEITEM wanted = *reinterpret_cast<const HTREEITEM*>(lparam);
    const TreeItems& items = tree_data(handle).items;
    const int row = items.find(wanted) == nullptr ? -1 : row_of(items, wanted);
    if (row < 0)
        return FALSE;
    const TreeItem& item = *items.find(wanted);
    rectangle = {of_text ? text_left(items, item) : 0, row * row_height,
                 of_text ? text_right(items, item) : client_size(existing_window(handle)).x,
                 (row + 1) * row_height - 1};
    return TRUE;
}

} // namespace substitute
