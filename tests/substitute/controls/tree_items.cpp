#include "substitute/controls/tree_items.h"

#include <cstdint>
#include <utility>

namespace substitute {
namespace {

constexpr unsigned handle_shift = 4;

HTREEITEM handle_of(std::size_t index) { return reinterpret_cast<HTREEITEM>((index + 1) << handle_shift); }

} // namespace

TreeItem* TreeItems::find(HTREEITEM handle) {
    return const_cast<TreeItem*>(std::as_const(*this).find(handle));
}

const TreeItem* TreeItems::find(HTREEITEM handle) const {
    const auto value = reinterpret_cast<std::uintptr_t>(handle);
    const std::size_t index = (value >> handle_shift) - 1;
    if (value == 0 || index >= items_.size() || handle_of(index) != handle || !items_[index].alive)
        return nullptr;
    return &items_[index];
}

TreeItem& TreeItems::at(HTREEITEM handle) {
    return items_[(reinterpret_cast<std::uintptr_t>(handle) >> handle_shift) - 1];
}

TreeItem& TreeItems::parent_of(const TreeItem& item) {
    return item.parent == nullptr ? root_ : at(item.parent);
}

HTREEITEM TreeItems::insert(HTREEITEM parent, HTREEITEM after, TreeItem item) {
    item.parent = parent == TVI_ROOT ? nullptr : parent;
    if (item.parent != nullptr && find(item.parent) == nullptr)
        return nullptr;
    const HTREEITEM handle = handle_of(items_.size());
    const TreeItem* sibling = find(after);
    TreeItem& above = parent_of(item);
    const bool behind_sibling = sibling != nullptr && sibling->parent == item.parent;
    item.previous = behind_sibling ? after : after == TVI_FIRST ? nullptr : above.last_child;
    item.next = item.previous == nullptr ? above.first_child : at(item.previous).next;
    (item.previous == nullptr ? above.first_child : at(item.previous).next) = handle;
    (item.next == nullptr ? above.last_child : at(item.next).previous) = handle;
    items_.push_back(std::move(item));
    ++count_;
    return handle;
}

void TreeItems::remove(HTREEITEM handle) {
    TreeItem& item = at(handle);
    TreeItem& above = parent_of(item);
    (item.previous == nullptr ? above.first_child : at(item.previous).next) = item.next;
    (item.next == nullptr ? above.last_child : at(item.next).previous) = item.previous;
    item = TreeItem{};
    item.alive = false;
    --count_;
}

HTREEITEM TreeItems::visible_after(HTREEITEM handle) const {
    const TreeItem* item = find(handle);
    if (item->expanded && item->first_child != nullptr)
        return item->first_child;
    while (item->next == nullptr && item->parent != nullptr)
        item = find(item->parent);
    return item->next;
}

HTREEITEM TreeItems::visible_before(HTREEITEM handle) const {
    const TreeItem* item = find(handle);
    return item->previous == nullptr ? item->parent : last_visible_below(item->previous);
}

HTREEITEM TreeItems::last_visible() const {
    return root_.last_child == nullptr ? nullptr : last_visible_below(root_.last_child);
}

HTREEITEM TreeItems::last_visible_below(HTREEITEM handle) const {
    const TreeItem* item = find(handle);
    while (item->expanded && item->last_child != nullptr) {
        handle = item->last_child;
        item = find(handle);
    }
    return handle;
}

} // namespace substitute
