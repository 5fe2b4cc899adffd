// The notifications that a window gets from its controls when the focus moves, in their order.
#include "support/boxes.h"
#include "support/tree_test.h"
#include "support/user.h"

#include <gmock/gmock.h>

#include <map>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::map<int, std::string> tree_codes{{static_cast<int>(NM_CLICK), "click"},
                                            {static_cast<int>(NM_SETFOCUS), "focus"},
                                            {static_cast<int>(NM_KILLFOCUS), "no focus"},
                                            {selection_changing, "changing"},
                                            {selection_changed, "changed"},
                                            {static_cast<int>(TVN_ITEMEXPANDINGA), "expanding"},
                                            {static_cast<int>(TVN_ITEMEXPANDEDA), "expanded"}};

class FocusNotifications : public TreeViewTest {
protected:
    HWND edit = nullptr;
    HWND button = nullptr;
    HWND combo_box = nullptr;

    void SetUp() override {
        TreeViewTest::SetUp();
        fill();
        edit = add("Edit", ES_AUTOHSCROLL);
        button = add("Button", BS_PUSHBUTTON);
        combo_box = add("ComboBox", CBS_DROPDOWNLIST);
        names = {{tree, "tree"}, {edit, "edit"}, {button, "button"}, {combo_box, "combo box"}};
    }

    void start_in(HWND control) {
        SetFocus(control);
        pump_messages();
        forget();
        heard_trees_ = static_cast<std::ptrdiff_t>(notifications(tree).size());
    }

    /// All messages about focus and activation since start_in, and the tree's notifications.
    std::vector<std::string> heard() {
        pump_messages();
        std::vector<std::string> lines;
        for (const Told& each : told)
            describe(each, lines);
        return lines;
    }

    RECT text_place(HTREEITEM item) const {
        RECT place{};
        *reinterpret_cast<HTREEITEM*>(&place) = item;
        EXPECT_NE(SendMessageA(tree, TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&place)), 0);
        return place;
    }
    void click_text(HTREEITEM item) {
        const RECT place = text_place(item);
        click_at(tree, {place.left + 2, place.top + 2});
        pump_messages();
    }
    void click_expander(HTREEITEM item) {
        const RECT place = text_place(item);
        click_at(tree, {place.left - 10, (place.top + place.bottom) / 2});
        pump_messages();
    }

    std::map<HWND, std::string> names;

private:
    void describe(const Told& each, std::vector<std::string>& lines) {
        const auto partner = reinterpret_cast<HWND>(each.wparam);
        if (each.message == WM_SETFOCUS || each.message == WM_KILLFOCUS) {
            lines.push_back((each.message == WM_SETFOCUS ? "focus from " : "no focus, to ") + name(partner));
        } else if (each.message == WM_ACTIVATE) {
            lines.push_back("activate " + std::to_string(LOWORD(each.wparam)) + " " +
                            std::to_string(HIWORD(each.wparam)));
        } else if (each.message == WM_SIZE) {
            lines.push_back("size " + std::to_string(each.wparam));
        } else if (each.message == WM_COMMAND) {
            lines.push_back(name(reinterpret_cast<HWND>(each.lparam)) + " " +
                            std::to_string(HIWORD(each.wparam)));
        } else if (each.message == WM_NOTIFY) {
            describe_tree(lines);
        }
    }
    /// The records no longer exist, but their codes were kept.
    void describe_tree(std::vector<std::string>& lines) {
        const auto code = tree_codes.find(notifications(tree).at(static_cast<std::size_t>(heard_trees_++)));
        if (code != tree_codes.end())
            lines.push_back("tree " + code->second);
    }
    std::string name(HWND control) const {
        const auto found = names.find(control);
        return found != names.end() ? found->second : control == nullptr ? "nobody" : "another";
    }

    std::ptrdiff_t heard_trees_ = 0;
};

TEST_F(FocusNotifications, TheControlThatLosesItSpeaksFirst) {
    start_in(edit);
    SetFocus(combo_box);
    SetFocus(button);
    SetFocus(edit);
    EXPECT_THAT(heard(), ElementsAre("edit 512", "combo box 3", "combo box 10", "combo box 4", "edit 256"));
}

TEST_F(FocusNotifications, AButtonSpeaksOfItOnlyWhenToldSo) {
    const HWND silent = add("Button", 0);
    start_in(edit);
    SetFocus(silent);
    SetFocus(edit);
    EXPECT_THAT(heard(), ElementsAre("edit 512", "edit 256"));
}

TEST_F(FocusNotifications, ATreeSelectsItsFirstItemBeforeItSpeaksOfTheFocus) {
    start_in(edit);
    SetFocus(tree);
    SetFocus(edit);
    EXPECT_THAT(heard(), ElementsAre("edit 512", "tree changing", "tree changed", "tree focus",
                                     "tree no focus", "edit 256"));
}

TEST_F(FocusNotifications, AClickedTreeItemIsSelectedBeforeTheTreeGetsTheFocus) {
    start_in(edit);
    click_text(other);
    EXPECT_THAT(heard(),
                ElementsAre("tree click", "tree changing", "tree changed", "edit 512", "tree focus"));
    EXPECT_EQ(selected(), other);
    EXPECT_EQ(GetFocus(), tree);
}

TEST_F(FocusNotifications, AClickOnTheSelectedItemOnlyTakesTheFocus) {
    select(root);
    start_in(edit);
    click_text(root);
    EXPECT_THAT(heard(), ElementsAre("tree click", "edit 512", "tree focus"));
}

TEST_F(FocusNotifications, AClickBesideTheItemsOnlyTakesTheFocus) {
    select(root);
    start_in(edit);
    click_at(tree, {180, text_place(root).top + 2});
    click_at(tree, {100, 150});
    EXPECT_THAT(heard(), ElementsAre("tree click", "edit 512", "tree focus", "tree click"));
    EXPECT_EQ(selected(), root);
}

TEST_F(FocusNotifications, AnItemOpensAndClosesBeforeTheTreeGetsTheFocus) {
    select(other);
    start_in(edit);
    click_expander(root);
    EXPECT_TRUE(is_expanded(root));
    EXPECT_THAT(heard(),
                ElementsAre("tree click", "tree expanding", "tree expanded", "edit 512", "tree focus"));
    start_in(edit);
    click_expander(root);
    EXPECT_FALSE(is_expanded(root));
    EXPECT_THAT(heard(),
                ElementsAre("tree click", "tree expanding", "tree expanded", "edit 512", "tree focus"));
    EXPECT_EQ(selected(), other);
}

TEST_F(FocusNotifications, ItemsInsideAClosedOneLieNowhere) {
    RECT place{};
    *reinterpret_cast<HTREEITEM*>(&place) = first;
    EXPECT_EQ(SendMessageA(tree, TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&place)), 0);
    expand(root);
    expand(group);
    const RECT above = text_place(group);
    const RECT below = text_place(first);
    EXPECT_GE(below.top, above.bottom);
    EXPECT_GT(below.left, above.left);
    click_text(second);
    EXPECT_EQ(selected(), second);
}

TEST_F(FocusNotifications, ADestroyedControlHandsItOverBeforeItGoes) {
    start_in(edit);
    DestroyWindow(edit);
    EXPECT_THAT(heard(), ElementsAre("edit 512", "focus from edit"));
    start_in(combo_box);
    DestroyWindow(combo_box);
    EXPECT_THAT(heard(), ElementsAre("combo box 10", "combo box 4", "focus from combo box"));
    select(root);
    start_in(tree);
    ShowWindow(tree, SW_HIDE);
    EXPECT_THAT(heard(), ElementsAre("tree no focus", "focus from tree"));
}

TEST_F(FocusNotifications, ADestroyedGroupPassesOnTheFocusThatItsControlLeftToIt) {
    const HWND group_box = add("Button", BS_GROUPBOX);
    const HWND inner = add_to(group_box, "Edit", 0);
    names[group_box] = "group box";
    start_in(inner);
    DestroyWindow(inner);
    EXPECT_EQ(GetFocus(), group_box);
    EXPECT_THAT(heard(), IsEmpty());
    DestroyWindow(group_box);
    EXPECT_EQ(GetFocus(), window);
    EXPECT_THAT(heard(), ElementsAre("focus from group box"));
}

TEST_F(FocusNotifications, ADisabledControlLosesItToNobody) {
    start_in(edit);
    EnableWindow(edit, FALSE);
    EXPECT_EQ(GetFocus(), nullptr);
    EXPECT_THAT(heard(), ElementsAre("edit 512"));
}

TEST_F(FocusNotifications, AMinimisedWindowKeepsItsFocusUntilItComesBack) {
    start_in(edit);
    ShowWindow(window, SW_MINIMIZE);
    EXPECT_EQ(client_size_of(window).x, 0);
    EXPECT_TRUE(IsWindowVisible(edit)) << "nothing is hidden";
    EXPECT_EQ(GetFocus(), edit);
    EXPECT_THAT(heard(), ElementsAre("size 1"));
    forget();
    ShowWindow(window, SW_RESTORE);
    EXPECT_GT(client_size_of(window).x, 0);
    EXPECT_THAT(heard(), ElementsAre("size 0", "edit 512", "focus from edit", "activate 1 0"));
    EXPECT_EQ(GetFocus(), window) << "not the control that had it";
}

TEST_F(FocusNotifications, TheUserMinimisesAndRestoresBySystemCommands) {
    start_in(edit);
    SendMessageA(window, WM_SYSCOMMAND, SC_MINIMIZE, 0);
    EXPECT_EQ(client_size_of(window).x, 0);
    SendMessageA(window, WM_SYSCOMMAND, SC_RESTORE, 0);
    EXPECT_GT(client_size_of(window).x, 0);
    EXPECT_THAT(heard(), ElementsAre("size 1", "size 0", "edit 512", "focus from edit", "activate 1 0"));
}

TEST_F(FocusNotifications, AMinimisedWindowIsNotGivenTheFocusByItsActivation) {
    const HWND other_window = CreateWindowExA(0, "Static", "other", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10,
                                              nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
    ShowWindow(window, SW_MINIMIZE);
    SetFocus(other_window);
    pump_messages();
    forget();
    SendMessageA(window, WM_ACTIVATE, MAKEWPARAM(WA_ACTIVE, 1), 0);
    EXPECT_EQ(GetFocus(), other_window);
    DestroyWindow(other_window);
}

TEST_F(FocusNotifications, ABoxWithoutOwnerLeavesTheWindowUsable) {
    Boxes boxes;
    start_in(edit);
    boxes.while_shown([&] {
        PostMessageA(button, WM_LBUTTONDOWN, 0, MAKELPARAM(2, 2));
        PostMessageA(button, WM_LBUTTONUP, 0, MAKELPARAM(2, 2));
    });
    MessageBoxA(nullptr, "text", "caption", MB_OK);
    EXPECT_THAT(heard(), ElementsAre("activate 0 0", "edit 512", "activate 1 0", "focus from another",
                                     "no focus, to button", "button 0"));
    EXPECT_EQ(GetFocus(), button) << "the end of a box that is not active moves nothing";
}

} // namespace
