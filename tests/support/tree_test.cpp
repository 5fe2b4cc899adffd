#include "support/tree_test.h"

void TreeViewTest::SetUp() {
    TestWindow::SetUp();
    tree = add("SysTreeView32",
               WS_GROUP | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS,
               "", WS_EX_CLIENTEDGE);
    MoveWindow(tree, 10, 10, 200, 200, FALSE);
}

void TreeViewTest::fill() {
    root = insert(nullptr, TVI_ROOT, "root");
    group = insert(root, TVI_LAST, "group");
    first = insert(group, TVI_LAST, "first");
    second = insert(group, TVI_LAST, "second");
    other = insert(nullptr, TVI_ROOT, "other");
    notified();
}

HTREEITEM TreeViewTest::insert(HTREEITEM parent, HTREEITEM after, const char* text) {
    TVINSERTSTRUCTA request{};
    request.hParent = parent;
    request.hInsertAfter = after;
    request.item.mask = TVIF_TEXT;
    request.item.pszText = const_cast<char*>(text);
    return reinterpret_cast<HTREEITEM>(
        SendMessageA(tree, TVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&request)));
}

HTREEITEM TreeViewTest::next(WPARAM which, HTREEITEM from) const {
    return reinterpret_cast<HTREEITEM>(
        SendMessageA(tree, TVM_GETNEXTITEM, which, reinterpret_cast<LPARAM>(from)));
}

LRESULT TreeViewTest::select(HTREEITEM item) {
    return SendMessageA(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
}

LRESULT TreeViewTest::expand(HTREEITEM item, WPARAM how) {
    return SendMessageA(tree, TVM_EXPAND, how, reinterpret_cast<LPARAM>(item));
}

bool TreeViewTest::is_expanded(HTREEITEM item) const {
    TVITEMA request{};
    request.mask = TVIF_STATE;
    request.hItem = item;
    request.stateMask = TVIS_EXPANDED;
    SendMessageA(tree, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&request));
    return (request.state & TVIS_EXPANDED) != 0;
}

std::string TreeViewTest::text(HTREEITEM item) const {
    char buffer[32] = "";
    TVITEMA request{};
    request.mask = TVIF_TEXT;
    request.hItem = item;
    request.pszText = buffer;
    request.cchTextMax = sizeof buffer;
    const bool exists = SendMessageA(tree, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&request)) != 0;
    return exists ? buffer : "no item";
}

std::vector<int> TreeViewTest::notified() {
    auto codes = notifications(tree);
    codes.erase(codes.begin(), codes.begin() + static_cast<std::ptrdiff_t>(known_));
    known_ += codes.size();
    std::erase_if(codes, [](int code) { return code != selection_changing && code != selection_changed; });
    return codes;
}
