#include "support/tree_test.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TreeItems : public TreeViewTest {};

TEST_F(TreeItems, ItemsHangWhereTheyWereInserted) {
    fill();
    EXPECT_EQ(next(TVGN_ROOT), root);
    EXPECT_EQ(next(TVGN_NEXT, root), other);
    EXPECT_EQ(next(TVGN_CHILD, root), group);
    EXPECT_EQ(next(TVGN_CHILD, group), first);
    EXPECT_EQ(next(TVGN_NEXT, first), second);
    EXPECT_EQ(next(TVGN_NEXT, second), nullptr);
    EXPECT_EQ(next(TVGN_CHILD, second), nullptr);
    EXPECT_EQ(text(second), "second");
}

TEST_F(TreeItems, ItemsCanStandFirstOrBehindAnother) {
    const HTREEITEM a = insert(TVI_ROOT, TVI_LAST, "a");
    const HTREEITEM c = insert(TVI_ROOT, TVI_LAST, "c");
    const HTREEITEM b = insert(TVI_ROOT, a, "b");
    const HTREEITEM start = insert(TVI_ROOT, TVI_FIRST, "start");
    EXPECT_EQ(next(TVGN_ROOT), start);
    EXPECT_EQ(next(TVGN_NEXT, start), a);
    EXPECT_EQ(next(TVGN_NEXT, a), b);
    EXPECT_EQ(next(TVGN_NEXT, b), c);
}

TEST_F(TreeItems, TheWayThatRootsAreInsertedPutsTheLastBehindTheOthers) {
    const HTREEITEM a = insert(nullptr, TVI_ROOT, "a");
    const HTREEITEM b = insert(nullptr, TVI_ROOT, "b");
    const HTREEITEM c = insert(nullptr, TVI_ROOT, "c");
    EXPECT_EQ(next(TVGN_ROOT), a);
    EXPECT_EQ(next(TVGN_NEXT, a), b);
    EXPECT_EQ(next(TVGN_NEXT, b), c);
}

TEST_F(TreeItems, NothingIsSelectedOrExpandedAtFirst) {
    fill();
    EXPECT_EQ(selected(), nullptr);
    EXPECT_FALSE(is_expanded(root));
    EXPECT_THAT(notified(), IsEmpty());
}

TEST_F(TreeItems, SelectingAnItemOpensWhatItIsIn) {
    fill();
    select(second);
    EXPECT_TRUE(is_expanded(root));
    EXPECT_TRUE(is_expanded(group));
}

TEST_F(TreeItems, ClosingWhatHoldsTheSelectionSelectsIt) {
    fill();
    select(second);
    EXPECT_NE(expand(root, TVE_COLLAPSE), 0);
    EXPECT_EQ(selected(), root);
}

TEST_F(TreeItems, AnItemWithoutChildrenDoesNotExpand) {
    fill();
    EXPECT_NE(expand(root), 0);
    EXPECT_TRUE(is_expanded(root));
    EXPECT_EQ(expand(other), 0);
    EXPECT_FALSE(is_expanded(other));
}

TEST_F(TreeItems, DestructionReportsEveryItem) {
    fill();
    select(second);
    notified();
    DestroyWindow(tree);
    const auto codes = notifications(tree);
    EXPECT_EQ(std::count(codes.begin(), codes.end(), static_cast<int>(TVN_DELETEITEMA)), 5);
    EXPECT_THAT(notified(), IsEmpty()) << "but no selection";
}

TEST_F(TreeItems, TakesAHundredThousandItems) {
    const HTREEITEM top = insert(nullptr, TVI_ROOT, "top");
    HTREEITEM last = nullptr;
    for (int i = 0; i < 100000; ++i)
        last = insert(top, TVI_LAST, "entry");
    EXPECT_NE(next(TVGN_CHILD, top), last);
    EXPECT_EQ(next(TVGN_NEXT, last), nullptr);
}

TEST_F(TreeItems, TheNextVisibleOneIsNotInsideAClosedOne) {
    fill();
    EXPECT_EQ(next(TVGN_NEXTVISIBLE, root), other);
    expand(root);
    EXPECT_EQ(next(TVGN_NEXTVISIBLE, root), group);
    EXPECT_EQ(next(TVGN_NEXTVISIBLE, group), other);
    EXPECT_EQ(next(TVGN_NEXTVISIBLE, other), nullptr);
}

} // namespace
