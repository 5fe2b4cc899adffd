#pragma once
/// A tree view that lives in another process.
#include "platform/win32.h"

#include <string>
#include <vector>

namespace e2e {

/// A path of texts from the root, for example {"Tavrin Agent", "Identity", "Agent name"}.
using TreePath = std::vector<std::string>;

class RemoteTree {
public:
    /// `owner`, the tree's process, must be open for memory operations.
    RemoteTree(HWND control, HANDLE owner) : tree(control), process(owner) {}

    /// Every item's text from top to bottom, indented by two blanks a level.
    std::vector<std::string> texts() const;
    /// The item at a path; throws std::runtime_error when there is none.
    HTREEITEM find(const TreePath& path) const;
    /// Selects an item as a program does, by message.
    void select(const TreePath& path) const;
    /// The text of the selected item; empty when none is selected.
    std::string selected() const;
    std::string text(HTREEITEM item) const;
    /// Where the item's text lies in the tree, which is scrolled for it. False for an item inside a closed
    /// one.
    bool find_text(HTREEITEM item, RECT& place) const;

private:
    HTREEITEM next(WPARAM relation, HTREEITEM item) const;
    bool read_text_place(HTREEITEM item, RECT& place) const;
    void list(HTREEITEM first, const std::string& indent, std::vector<std::string>& lines) const;

    HWND tree;
    HANDLE process;
};

} // namespace e2e
