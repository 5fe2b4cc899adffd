#include "app/group_tree.h"

namespace {

HTREEITEM insert_item(HWND tree, HTREEITEM parent, HTREEITEM after, std::string_view text) {
    const std::string shown(text);
    TVINSERTSTRUCTA insertion{};
    insertion.hParent = parent;
    insertion.hInsertAfter = after;
    insertion.item.mask = TVIF_TEXT;
    insertion.item.pszText = const_cast<char*>(shown.c_str());
    return reinterpret_cast<HTREEITEM>(
        SendMessageA(tree, TVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&insertion)));
}

HTREEITEM insert_node(Configuration& configuration, HWND tree, HTREEITEM parent, HTREEITEM after,
                      std::string_view text) {
    const HTREEITEM item = insert_item(tree, parent, after, text);
    configuration.node_items.insert(item);
    return item;
}

void note_whether_changed(Configuration& configuration, BaseEntry& entry) {
    if (entry.changed()) {
        configuration.changed_entries.insert(&entry);
    } else {
        configuration.changed_entries.erase(&entry);
    }
}

} // namespace

void fill_tree(Configuration& configuration, HWND tree) {
    if (configuration.groups.empty())
        return;
    configuration.entry_items.clear();
    const HTREEITEM root = insert_node(configuration, tree, nullptr, TVI_ROOT, configuration.name);
    for (const Group& group : configuration.groups) {
        const HTREEITEM parent =
            group.name.empty() ? root : insert_node(configuration, tree, root, TVI_LAST, group.name);
        for (const auto& entry : group.entries)
            configuration.entry_items.emplace(insert_item(tree, parent, TVI_LAST, entry->title()), &*entry);
    }
}

/// All state is updated before the first control is destroyed: a control that is destroyed with the focus
/// sends notifications, whose handlers ask for the shown page's values.
void leave_page(Configuration& configuration, HWND parent) {
    BaseEntry* const left = configuration.shown_entry;
    if (left == nullptr)
        return;
    left->takeValue();
    note_whether_changed(configuration, *left);
    configuration.shown_entry = nullptr;
    left->deselect(parent);
}

bool select_item(Configuration& configuration, HWND parent, HTREEITEM item) {
    leave_page(configuration, parent);
    const auto found = configuration.entry_items.find(item);
    if (found == configuration.entry_items.end())
        return configuration.node_items.contains(item);
    found->second->select(parent);
    // Set only now, because no value may be taken from a page before all its controls exist.
    configuration.shown_entry = found->second;
    configuration.changed_entries.erase(found->second);
    return true;
}
