#include "support/tree_test.h"
#include "support/user.h"

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class TreeSelection : public TreeViewTest {};

TEST_F(TreeSelection, ASelectionIsAnnouncedAndReported) {
    fill();
    EXPECT_NE(select(first), 0);
    EXPECT_EQ(selected(), first);
    EXPECT_THAT(notified(), ElementsAre(selection_changing, selection_changed));
    EXPECT_NE(select(first), 0);
    EXPECT_THAT(notified(), IsEmpty()) << "it was selected already";
}

TEST_F(TreeSelection, WhenTheSelectionIsReportedItHasChanged) {
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

TEST_F(TreeSelection, TheReportNamesBothItems) {
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

TEST_F(TreeSelection, TheParentMayRefuseASelection) {
    fill();
    select(first);
    notified();
    answer_notify = [](const NMHDR& header) -> LRESULT {
        return header.code == TVN_SELCHANGINGA ? TRUE : FALSE;
    };
    EXPECT_EQ(select(second), 0);
    EXPECT_EQ(selected(), first);
    EXPECT_THAT(notified(), ElementsAre(selection_changing));
}

TEST_F(TreeSelection, TheFirstFocusSelectsTheFirstItem) {
    fill();
    SetFocus(tree);
    EXPECT_EQ(selected(), root);
    EXPECT_THAT(notified(), ElementsAre(selection_changing, selection_changed));
    EXPECT_THAT(notifications(tree), Contains(static_cast<int>(NM_SETFOCUS)));
    SetFocus(window);
    EXPECT_THAT(notifications(tree), Contains(static_cast<int>(NM_KILLFOCUS)));
    SetFocus(tree);
    EXPECT_THAT(notified(), IsEmpty());
}

TEST_F(TreeSelection, FocusLeavesASelectionAlone) {
    fill();
    select(second);
    notified();
    SetFocus(tree);
    EXPECT_EQ(selected(), second);
    EXPECT_THAT(notified(), IsEmpty());
}

TEST_F(TreeSelection, FocusInAnEmptyTreeSelectsNothing) {
    SetFocus(tree);
    EXPECT_EQ(selected(), nullptr);
    EXPECT_THAT(notified(), IsEmpty());
}

TEST_F(TreeSelection, ArrowKeysWalkThroughWhatIsShown) {
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

TEST_F(TreeSelection, HomeAndEndGoToTheEnds) {
    fill();
    SetFocus(tree);
    press_key(VK_END);
    pump_messages();
    EXPECT_EQ(selected(), other);
    press_key(VK_HOME);
    pump_messages();
    EXPECT_EQ(selected(), root);
}

TEST_F(TreeSelection, KeysReportLikeOtherSelections) {
    fill();
    SetFocus(tree);
    notified();
    press_key(VK_DOWN);
    pump_messages();
    EXPECT_THAT(notified(), ElementsAre(selection_changing, selection_changed));
    press_key(VK_DOWN);
    pump_messages();
    EXPECT_THAT(notified(), IsEmpty()) << "there is nothing below";
}

TEST_F(TreeSelection, TakesArrowsFromTheDialogNavigationButNeitherTabNorEnter) {
    const LRESULT code = SendMessageA(tree, WM_GETDLGCODE, 0, 0);
    EXPECT_EQ(code, DLGC_WANTARROWS | DLGC_WANTCHARS);
}

TEST_F(TreeSelection, EveryKeyIsReported) {
    fill();
    SetFocus(tree);
    const auto keys = [this] {
        auto codes = notifications(tree);
        std::erase_if(codes, [](int code) { return code != static_cast<int>(TVN_KEYDOWN); });
        return codes;
    };
    press_key(VK_SPACE);
    press_key(VK_RETURN);
    pump_messages();
    EXPECT_THAT(keys(), ElementsAre(static_cast<int>(TVN_KEYDOWN), static_cast<int>(TVN_KEYDOWN)));
}

TEST_F(TreeSelection, ALetterGoesToTheNextItemThatBeginsWithIt) {
    fill();
    SetFocus(tree);
    notified();
    type_text("O");
    pump_messages();
    EXPECT_EQ(selected(), other);
    EXPECT_THAT(notified(), ElementsAre(selection_changing, selection_changed));
}

} // namespace
