#pragma once
/// The items of a tree view: linked both ways, each operation at constant cost. Internal to the substitute.
#include "substitute/windows/user_tree.h"

#include <string>
#include <vector>

namespace substitute {

struct TreeItem {
    std::string text;
    LPARAM parameter = 0;
    HTREEITEM parent = nullptr;
    HTREEITEM first_child = nullptr;
    HTREEITEM last_child = nullptr;
    HTREEITEM next = nullptr;
    HTREEITEM previous = nullptr;
    bool expanded = false;
    bool alive = true;
};

class TreeItems {
public:
    /// The item, or null when it does not exist (any more).
    TreeItem* find(HTREEITEM handle);
    const TreeItem* find(HTREEITEM handle) const;
    HTREEITEM first_root() const { return root_.first_child; }
    UINT count() const { return count_; }

    /// Inserts below `parent` (null or TVI_ROOT: a root), after a sibling, TVI_FIRST or TVI_LAST. Returns
    /// null when the parent does not exist.
    HTREEITEM insert(HTREEITEM parent, HTREEITEM after, TreeItem item);
    /// Takes out one item, which must have no children.
    void remove(HTREEITEM handle);

    /// The neighbours among the items that are not inside a collapsed one.
    HTREEITEM visible_after(HTREEITEM handle) const;
    HTREEITEM visible_before(HTREEITEM handle) const;
    HTREEITEM last_visible() const;

private:
    /// An item that exists.
    TreeItem& at(HTREEITEM handle);
    TreeItem& parent_of(const TreeItem& item);
    HTREEITEM last_visible_below(HTREEITEM handle) const;

    TreeItem root_;
    std::vector<TreeItem> items_;
    UINT count_ = 0;
};

} // namespace substitute
