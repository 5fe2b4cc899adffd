#include "substitute/controls/tree_view.h"

#include "substitute/text.h"

namespace substitute {
namespace {

/// Left closes an item or goes to its parent, right opens it or goes to its first child.
HTREEITEM sideways(HWND handle, HTREEITEM from, bool inwards) {
    const TreeItem item = *tree_data(handle).items.find(from);
    if (inwards && item.first_child != nullptr && item.expanded)
        return item.first_child;
    if (!inwards && !(item.expanded && item.first_child != nullptr))
        return item.parent;
    expand_tree_item(handle, inwards ? TVE_EXPAND : TVE_COLLAPSE, from);
    return nullptr;
}

HTREEITEM target_of(HWND handle, WPARAM key, HTREEITEM from) {
    const TreeItems& items = tree_data(handle).items;
    switch (static_cast<int>(key)) {
    case VK_UP: return items.visible_before(from);
    case VK_DOWN: return items.visible_after(from);
    case VK_HOME: return items.first_root();
    case VK_END: return items.last_visible();
    case VK_LEFT:
    case VK_RIGHT: return sideways(handle, from, key == VK_RIGHT);
    default: return nullptr;
    }
}

} // namespace

LRESULT take_tree_key(HWND handle, WPARAM key) {
    NMTVKEYDOWN record{};
    record.wVKey = LOWORD(key);
    notify_parent_of_tree(handle, record.hdr, TVN_KEYDOWN);
    if (!IsWindow(handle))
        return 0;
    const HTREEITEM from = tree_data(handle).selected;
    const HTREEITEM target = from == nullptr ? nullptr : target_of(handle, key, from);
    if (target != nullptr)
        select_tree_item(handle, target, TVC_BYKEYBOARD);
    return 0;
}

/// A letter goes to the next item, among those shown, that begins with it.
LRESULT take_tree_character(HWND handle, WPARAM character) {
    const TreeData& data = tree_data(handle);
    const char wanted = folded(static_cast<char>(character));
    const auto next = [&](HTREEITEM from) {
        const HTREEITEM after = data.items.visible_after(from);
        return after == nullptr ? data.items.first_root() : after;
    };
    if (data.selected == nullptr)
        return 0;
    for (HTREEITEM each = next(data.selected); each != data.selected; each = next(each)) {
        const std::string& text = data.items.find(each)->text;
        if (!text.empty() && folded(text[0]) == wanted) {
            select_tree_item(handle, each, TVC_BYKEYBOARD);
            break;
        }
    }
    return 0;
}

} // namespace substitute
