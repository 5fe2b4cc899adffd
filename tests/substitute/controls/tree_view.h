#pragma once
/// What the parts of the tree view share. Internal to the substitute.
#include "substitute/controls/tree_items.h"
#include "substitute/windows/window.h"

namespace substitute {

struct TreeData : ControlData {
    TreeItems items;
    HTREEITEM selected = nullptr;
};

inline TreeData& tree_data(HWND tree) { return *data_of<TreeData>(tree); }

/// Sends WM_NOTIFY to the parent; `header` is the head of the record that goes with it.
LRESULT notify_parent_of_tree(HWND tree, NMHDR& header, UINT code);
LRESULT notify_parent_of_tree(HWND tree, UINT code);

LRESULT expand_tree_item(HWND tree, WPARAM how, HTREEITEM item);
/// `cause` is TVC_UNKNOWN, TVC_BYMOUSE or TVC_BYKEYBOARD.
LRESULT select_tree_item(HWND tree, HTREEITEM item, UINT cause);

LRESULT take_tree_click(HWND tree, LPARAM where);
/// TVM_GETITEMRECT: `lparam` points to the item, and then to its rectangle.
LRESULT item_rectangle(HWND tree, bool of_text, LPARAM lparam);

LRESULT take_tree_key(HWND tree, WPARAM key);
LRESULT take_tree_character(HWND tree, WPARAM character);

} // namespace substitute
