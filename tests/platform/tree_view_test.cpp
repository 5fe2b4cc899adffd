#include "support/test_window.h"
#include "support/user.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const int kChanging = static_cast<int>(TVN_SELCHANGINGA);
const int kChanged = static_cast<int>(TVN_SELCHANGEDA);

class TreeView : public TestWindow {
protected:
    HWND tree = nullptr;
    HTREEITEM root = nullptr;
    HTREEITEM group = nullptr;
    HTREEITEM first = nullptr;
    HTREEITEM second = nullptr;
    HTREEITEM other = nullptr;

    void SetUp() override {
        TestWindow::SetUp();
        tree =
            add("SysTreeView32",
                WS_GROUP | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS,
                "", WS_EX_CLIENTEDGE);
        MoveWindow(tree, 10, 10, 200, 200, FALSE);
    }
    HTREEITEM insert(HTREEITEM parent, HTREEITEM after, const char* text) {
        TVINSERTSTRUCTA request{};
        request.hParent = parent;
        request.hInsertAfter = after;
        request.item.mask = TVIF_TEXT;
        request.item.pszText = const_cast<char*>(text);
        return reinterpret_cast<HTREEITEM>(
            SendMessageA(tree, TVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&request)));
    }
    /// root (group (first, second)), other
    void fill() {
        root = insert(nullptr, TVI_ROOT, "root");
        group = insert(root, TVI_LAST, "group");
        first = insert(group, TVI_LAST, "first");
        second = insert(group, TVI_LAST, "second");
        other = insert(nullptr, TVI_ROOT, "other");
        notified();
    }
    HTREEITEM next(WPARAM which, HTREEITEM from = nullptr) const {
        return reinterpret_cast<HTREEITEM>(
            SendMessageA(tree, TVM_GETNEXTITEM, which, reinterpret_cast<LPARAM>(from)));
    }
    HTREEITEM selected() const { return next(TVGN_CARET); }
    LRESULT select(HTREEITEM item) {
        return SendMessageA(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
    }
    LRESULT expand(HTREEITEM item, WPARAM how = TVE_EXPAND) {
        return SendMessageA(tree, TVM_EXPAND, how, reinterpret_cast<LPARAM>(item));
    }
    bool is_expanded(HTREEITEM item) const {
        TVITEMA request{};
        request.mask = TVIF_STATE;
        request.hItem = item;
        request.stateMask = TVIS_EXPANDED;
        SendMessageA(tree, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&request));
        return (request.state & TVIS_EXPANDED) != 0;
    }
    std::string text(HTREEITEM item) const {
        char buffer[32] = "";
        TVITEMA request{};
        request.mask = TVIF_TEXT;
        request.hItem = item;
        request.pszText = buffer;
        request.cchTextMax = sizeof buffer;
        return SendMessageA(tree, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&request)) != 0 ? buffer
                                                                                            : "no item";
    }
    /// What the parent was told of selections since the last call.
    std::vector<int> notified() {
        auto codes = notifications(tree);
        codes.erase(codes.begin(), codes.begin() + static_cast<std::ptrdiff_t>(known_));
        known_ += codes.size();
        std::erase_if(codes, [](int code) { return code != kChanging && code != kChanged; });
        return codes;
    }

private:
    std::size_t known_ = 0;
};

TEST_F(TreeView, ItemsHangWhereTheyWereInserted) {
    fill();
    EXPECT_EQ(SendMessageA(tree, TVM_GETCOUNT, 0, 0), 5);
    EXPECT_EQ(next(TVGN_ROOT), root);
    EXPECT_EQ(next(TVGN_NEXT, root), other);
    EXPECT_EQ(next(TVGN_PREVIOUS, other), root);
    EXPECT_EQ(next(TVGN_CHILD, root), group);
    EXPECT_EQ(next(TVGN_CHILD, group), first);
    EXPECT_EQ(next(TVGN_NEXT, first), second);
    EXPECT_EQ(next(TVGN_NEXT, second), nullptr);
    EXPECT_EQ(next(TVGN_PARENT, second), group);
    EXPECT_EQ(next(TVGN_PARENT, root), nullptr);
    EXPECT_EQ(next(TVGN_CHILD, second), nullptr);
    EXPECT_EQ(text(second), "second");
}

TEST_F(TreeView, ItemsCanStandFirstOrBehindAnother) {
    const HTREEITEM a = insert(TVI_ROOT, TVI_LAST, "a");
    const HTREEITEM c = insert(TVI_ROOT, TVI_LAST, "c");
    const HTREEITEM b = insert(TVI_ROOT, a, "b");
    const HTREEITEM start = insert(TVI_ROOT, TVI_FIRST, "start");
    EXPECT_EQ(next(TVGN_ROOT), start);
    EXPECT_EQ(next(TVGN_NEXT, start), a);
    EXPECT_EQ(next(TVGN_NEXT, a), b);
    EXPECT_EQ(next(TVGN_NEXT, b), c);
}

TEST_F(TreeView, TheWayThatRootsAreInsertedPutsTheLastBehindTheOthers) {
    const HTREEITEM a = insert(nullptr, TVI_ROOT, "a");
    const HTREEITEM b = insert(nullptr, TVI_ROOT, "b");
    const HTREEITEM c = insert(nullptr, TVI_ROOT, "c");
    EXPECT_EQ(next(TVGN_ROOT), a);
    EXPECT_EQ(next(TVGN_NEXT, a), b);
    EXPECT_EQ(next(TVGN_NEXT, b), c);
}

TEST_F(TreeView, NothingIsSelectedOrExpandedAtFirst) {
    fill();
    EXPECT_EQ(selected(), nullptr);
    EXPECT_FALSE(is_expanded(root));
    EXPECT_THAT(notified(), IsEmpty());
}

TEST_F(TreeView, ASelectionIsAnnouncedAndReported) {
    fill();
    EXPECT_NE(select(first), 0);
    EXPECT_EQ(selected(), first);
    EXPECT_THAT(notified(), ElementsAre(kChanging, kChanged));
    EXPECT_NE(select(first), 0);
    EXPECT_THAT(notified(), IsEmpty()) << "it was selected already";
}

TEST_F(TreeView, WhenTheSelectionIsReportedItHasChanged) {
    fill();
    HTREEITEM when_announced = root;
    HTREEITEM when_reported = root;
    answer_notify = [&](const NMHDR& header) -> LRESULT {
        if (header.code == TVN_SELCHANGINGA)
            when_announced = selected();
        if (header.code == TVN_SELCHANGEDA)
            when_reported = selected();
        return 0;
    };
    select(second);
    EXPECT_EQ(when_announced, nullptr);
    EXPECT_EQ(when_reported, second);
}

TEST_F(TreeView, TheReportNamesBothItems) {
    fill();
    select(first);
    HTREEITEM before = nullptr;
    HTREEITEM after = nullptr;
    UINT_PTR id = 0;
    answer_notify = [&](const NMHDR& header) -> LRESULT {
        if (header.code != TVN_SELCHANGEDA)
            return 0;
        const auto& record = reinterpret_cast<const NMTREEVIEWA&>(header);
        before = record.itemOld.hItem;
        after = record.itemNew.hItem;
        id = header.idFrom;
        return 0;
    };
    select(second);
    EXPECT_EQ(before, first);
    EXPECT_EQ(after, second);
    EXPECT_EQ(id, static_cast<UINT_PTR>(GetDlgCtrlID(tree)));
}

TEST_F(TreeView, TheParentMayRefuseASelection) {
    fill();
    select(first);
    notified();
    answer_notify = [](const NMHDR& header) -> LRESULT {
        return header.code == TVN_SELCHANGINGA ? TRUE : FALSE;
    };
    EXPECT_EQ(select(second), 0);
    EXPECT_EQ(selected(), first);
    EXPECT_THAT(notified(), ElementsAre(kChanging));
}

TEST_F(TreeView, SelectingAnItemOpensWhatItIsIn) {
    fill();
    select(second);
    EXPECT_TRUE(is_expanded(root));
    EXPECT_TRUE(is_expanded(group));
}

TEST_F(TreeView, TheFirstFocusSelectsTheFirstItem) {
    fill();
    SetFocus(tree);
    EXPECT_EQ(selected(), root);
    EXPECT_THAT(notified(), ElementsAre(kChanging, kChanged));
    EXPECT_THAT(notifications(tree), Contains(static_cast<int>(NM_SETFOCUS)));
    SetFocus(window);
    EXPECT_THAT(notifications(tree), Contains(static_cast<int>(NM_KILLFOCUS)));
    SetFocus(tree);
    EXPECT_THAT(notified(), IsEmpty());
}

TEST_F(TreeView, FocusLeavesASelectionAlone) {
    fill();
    select(second);
    notified();
    SetFocus(tree);
    EXPECT_EQ(selected(), second);
    EXPECT_THAT(notified(), IsEmpty());
}

TEST_F(TreeView, FocusInAnEmptyTreeSelectsNothing) {
    SetFocus(tree);
    EXPECT_EQ(selected(), nullptr);
    EXPECT_THAT(notified(), IsEmpty());
}

TEST_F(TreeView, ArrowKeysWalkThroughWhatIsShown) {
    fill();
    SetFocus(tree);
    press_key(VK_DOWN);
    pump_messages();
    EXPECT_EQ(selected(), other) << "the root is closed";
    press_key(VK_UP);
    press_key(VK_RIGHT);
    pump_messages();
    EXPECT_EQ(selected(), root);
    EXPECT_TRUE(is_expanded(root));
    press_key(VK_RIGHT);
    pump_messages();
    EXPECT_EQ(selected(), group);
    press_key(VK_RIGHT);
    press_key(VK_DOWN);
    press_key(VK_DOWN);
    pump_messages();
    EXPECT_EQ(selected(), second);
    press_key(VK_DOWN);
    pump_messages();
    EXPECT_EQ(selected(), other);
    press_key(VK_UP);
    press_key(VK_LEFT);
    pump_messages();
    EXPECT_EQ(selected(), group);
    press_key(VK_LEFT);
    pump_messages();
    EXPECT_EQ(selected(), group);
    EXPECT_FALSE(is_expanded(group));
}

TEST_F(TreeView, HomeAndEndGoToTheEnds) {
    fill();
    SetFocus(tree);
    press_key(VK_END);
    pump_messages();
    EXPECT_EQ(selected(), other);
    press_key(VK_HOME);
    pump_messages();
    EXPECT_EQ(selected(), root);
}

TEST_F(TreeView, KeysReportLikeOtherSelections) {
    fill();
    SetFocus(tree);
    notified();
    press_key(VK_DOWN);
    pump_messages();
    EXPECT_THAT(notified(), ElementsAre(kChanging, kChanged));
    press_key(VK_DOWN);
    pump_messages();
    EXPECT_THAT(notified(), IsEmpty()) << "there is nothing below";
}

TEST_F(TreeView, ClosingWhatHoldsTheSelectionSelectsIt) {
    fill();
    select(second);
    EXPECT_NE(expand(root, TVE_COLLAPSE), 0);
    EXPECT_EQ(selected(), root);
}

TEST_F(TreeView, AnItemWithoutChildrenDoesNotExpand) {
    fill();
    EXPECT_NE(expand(root), 0);
    EXPECT_TRUE(is_expanded(root));
    EXPECT_EQ(expand(other), 0);
    EXPECT_FALSE(is_expanded(other));
}

TEST_F(TreeView, DeletingAnItemTakesItsChildrenAlong) {
    fill();
    EXPECT_NE(SendMessageA(tree, TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(group)), 0);
    EXPECT_EQ(SendMessageA(tree, TVM_GETCOUNT, 0, 0), 2);
    EXPECT_EQ(next(TVGN_CHILD, root), nullptr);
}

TEST_F(TreeView, DeletingTheSelectedItemSelectsAnother) {
    fill();
    select(second);
    notified();
    SendMessageA(tree, TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(second));
    EXPECT_EQ(selected(), group) << "there is no sibling behind it";
    EXPECT_THAT(notified(), ElementsAre(kChanging, kChanged));
}

TEST_F(TreeView, DeletingTheRootEmptiesTheTree) {
    fill();
    select(second);
    notified();
    EXPECT_NE(SendMessageA(tree, TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT)), 0);
    EXPECT_EQ(SendMessageA(tree, TVM_GETCOUNT, 0, 0), 0);
    EXPECT_EQ(selected(), nullptr);
    EXPECT_THAT(notified(), IsEmpty());
}

TEST_F(TreeView, DestructionReportsEveryItem) {
    fill();
    select(second);
    notified();
    DestroyWindow(tree);
    const auto codes = notifications(tree);
    EXPECT_EQ(std::count(codes.begin(), codes.end(), static_cast<int>(TVN_DELETEITEMA)), 5);
    EXPECT_THAT(notified(), IsEmpty()) << "but no selection";
}

TEST_F(TreeView, TakesAHundredThousandItems) {
    const HTREEITEM top = insert(nullptr, TVI_ROOT, "top");
    HTREEITEM last = nullptr;
    for (int i = 0; i < 100000; ++i)
        last = insert(top, TVI_LAST, "entry");
    EXPECT_EQ(SendMessageA(tree, TVM_GETCOUNT, 0, 0), 100001);
    EXPECT_EQ(next(TVGN_PARENT, last), top);
    EXPECT_EQ(next(TVGN_NEXT, last), nullptr);
}

TEST_F(TreeView, TakesArrowsFromTheDialogNavigationButNeitherTabNorEnter) {
    const LRESULT code = SendMessageA(tree, WM_GETDLGCODE, 0, 0);
    EXPECT_EQ(code, DLGC_WANTARROWS | DLGC_WANTCHARS);
}

TEST_F(TreeView, EveryKeyIsReportedAndEnterOnceMore) {
    fill();
    SetFocus(tree);
    const auto keys = [this] {
        auto codes = notifications(tree);
        std::erase_if(codes, [](int code) {
            return code != static_cast<int>(TVN_KEYDOWN) && code != static_cast<int>(NM_RETURN);
        });
        return codes;
    };
    press_key(VK_SPACE);
    press_key(VK_RETURN);
    pump_messages();
    EXPECT_THAT(keys(), ElementsAre(static_cast<int>(TVN_KEYDOWN), static_cast<int>(TVN_KEYDOWN),
                                    static_cast<int>(NM_RETURN)));
}

TEST_F(TreeView, ALetterGoesToTheNextItemThatBeginsWithIt) {
    fill();
    SetFocus(tree);
    notified();
    type_text("O");
    pump_messages();
    EXPECT_EQ(selected(), other);
    EXPECT_THAT(notified(), ElementsAre(kChanging, kChanged));
}

} // namespace
