#include "app/focus.h"

#include "app/main_window_controls.h"
#include "support/program.h"
#include "support/registry.h"
#include "support/test_window.h"
#include "window/top_level.h"

#include <gmock/gmock.h>

namespace {

constexpr char spec_text[] =
    "SOFTWARE\\TavrinTests\\Agent\nAgent\n"
    "!All\n$Name\nName\nh\nString\n$Folder\nFolder\nh\nDirectory\n$Flag\nFlag\nh\nBoolean\n"
    "$Gone\nNoSuchKey\nh\nRemoveKey\n";
constexpr char connection_test[] = "$Test\n\nh\nConnectionTest\nName\nName\nName\nName\n";

class Keyboard : public ProgramTest {
protected:
    void open(const std::string& node, const std::string& more = "") {
        spec_file("A", spec_text + more);
        set_text(agent_key, "Name", "web1");
        set_text(agent_key, "Flag", "true");
        then([] { SetFocus(control(tree_id)); });
        then([node] { select(node); });
    }
    void then_press(int key, bool with_shift = false) {
        then([=] { press_key(key, with_shift); });
    }
    void then_focus_is(const std::function<HWND()>& expected) {
        then([expected] { EXPECT_EQ(GetFocus(), expected()); });
    }
    /// Presses Tab again and again; each time the next of these has the focus.
    void then_walk(std::initializer_list<std::function<HWND()>> controls, bool back = false) {
        for (const auto& each : controls) {
            then_press(VK_TAB, back);
            then_focus_is(each);
        }
    }
    static std::function<HWND()> main_control(int id) {
        return [id] { return control(id); };
    }
    static std::function<HWND()> page_control(std::size_t index) {
        return [index] { return page_controls().at(index); };
    }
};

TEST_F(Keyboard, TabGoesFromTheTreeThroughThePageToCloseAndRoundWhileOkIsDisabled) {
    open("Name");
    then_walk({page_control(0), main_control(close_id), main_control(tree_id)});
    EXPECT_EQ(run(), 0);
}

TEST_F(Keyboard, TabStopsAtTestConnectionAndOkWhenTheyCanBeUsed) {
    open("Folder", connection_test);
    then_walk({page_control(0)});
    then([] { type_text("x"); });
    then_walk(
        {page_control(1), main_control(test_connection_id), main_control(ok_id), main_control(close_id)});
    EXPECT_EQ(run(), 0);
}

TEST_F(Keyboard, ShiftTabGoesBack) {
    open("Name");
    then_walk({main_control(close_id), page_control(0), main_control(tree_id)}, true);
    EXPECT_EQ(run(), 0);
}

TEST_F(Keyboard, ADisabledControlIsPassedOver) {
    open("Gone");
    then_walk({main_control(close_id)});
    EXPECT_EQ(run(), 0);
}

TEST_F(Keyboard, TheFirstTabReachesTheTree) {
    spec_file("A", spec_text);
    then([] { SetFocus(main_window); });
    then_walk({main_control(tree_id)});
    EXPECT_EQ(run(), 0);
}

TEST_F(Keyboard, AnEditReachedByTabIsReplacedByTyping) {
    open("Name");
    then_press(VK_TAB);
    then([] { type_text("db7"); });
    then([] { EXPECT_EQ(text_of(page_controls().at(0)), "db7"); });
    EXPECT_EQ(run(), 0);
}

TEST_F(Keyboard, SpaceTogglesACheckbox) {
    open("Flag");
    then_press(VK_TAB);
    then_press(VK_SPACE);
    then([] { EXPECT_EQ(SendMessageA(page_controls().at(0), BM_GETCHECK, 0, 0), BST_UNCHECKED); });
    then([] { EXPECT_EQ(text_of(control(close_id)), "Cancel"); });
    EXPECT_EQ(run(), 0);
}

TEST_F(Keyboard, TheWholeEditNeedsNoMouse) {
    open("Name");
    then_press(VK_TAB);
    then([] { type_text("db7"); });
    then_walk({main_control(ok_id)});
    then_press(VK_SPACE);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(text_value(agent_key, "Name"), "db7");
}

TEST_F(Keyboard, SpaceOnCloseWritesNothing) {
    open("Name");
    then_press(VK_TAB);
    then([] { type_text("db7"); });
    then_press(VK_TAB);
    then_walk({main_control(close_id)});
    then_press(VK_SPACE);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(text_value(agent_key, "Name"), "web1");
}

TEST_F(Keyboard, ComingBackFromAMessageBoxTheControlHasTheFocusAgain) {
    open("Name", connection_test);
    set_text(agent_key, "Name", "");
    then_press(VK_TAB);
    then_walk({main_control(test_connection_id)});
    then_press(VK_SPACE);
    then([&] { EXPECT_EQ(boxes.seen().size(), 1u); });
    then_focus_is(main_control(test_connection_id));
    EXPECT_EQ(run(), 0);
}

TEST_F(Keyboard, EnterPressesTheButtonThatHasTheFocus) {
    open("Name");
    then_press(VK_TAB);
    then([] { type_text("db7"); });
    then_walk({main_control(ok_id)});
    then_press(VK_RETURN);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(text_value(agent_key, "Name"), "db7");
}

TEST_F(Keyboard, EnterPressesAButtonOfThePage) {
    open("Signal", "$Signal\nTavrinTestsEnter\nh\nSignalEvent\n");
    then_walk({page_control(0)});
    then_press(VK_RETURN);
    EXPECT_EQ(run(), 0);
    ASSERT_EQ(boxes.seen().size(), 1u);
    EXPECT_EQ(boxes.seen()[0].text, "The action has been taken.");
}

TEST_F(Keyboard, EnterElsewhereDoesNothing) {
    for (const char* const node : {"Name", "Flag"}) {
        open(node);
        then_press(VK_TAB);
        then_focus_is(page_control(0));
        then_press(VK_RETURN);
        then_focus_is(page_control(0));
        then([] { EXPECT_EQ(text_of(control(close_id)), "Close"); });
    }
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(boxes.seen().empty());
}

TEST_F(Keyboard, EnterHeldDownPressesOnce) {
    open("Name", connection_test);
    set_text(agent_key, "Name", "");
    then([] { SetFocus(control(test_connection_id)); });
    then([&] {
        MSG enter{};
        enter.hwnd = control(test_connection_id);
        enter.message = WM_KEYDOWN;
        enter.wParam = VK_RETURN;
        enter.lParam = 1;
        EXPECT_TRUE(handle_key(main_window, enter));
        EXPECT_EQ(boxes.seen().size(), 1u);
        enter.lParam = 0x40000001; // the key was down before
        EXPECT_TRUE(handle_key(main_window, enter));
        EXPECT_EQ(boxes.seen().size(), 1u);
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(Keyboard, ArrowsMoveNothingOnButtonsAndCheckBoxes) {
    open("Flag", connection_test);
    for (const int key : {VK_LEFT, VK_UP, VK_RIGHT, VK_DOWN}) {
        then([] { SetFocus(page_controls().at(0)); });
        then_press(key);
        then_focus_is(page_control(0));
        then([] { SetFocus(control(test_connection_id)); });
        then_press(key);
        then_focus_is(main_control(test_connection_id));
        then([] { SetFocus(control(close_id)); });
        then_press(key);
        then_focus_is(main_control(close_id));
    }
    then([] {
        EXPECT_EQ(SendMessageA(page_controls().at(0), BM_GETCHECK, 0, 0), BST_CHECKED);
        EXPECT_EQ(text_of(control(close_id)), "Close");
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(Keyboard, ArrowsGoToTheControlsThatUseThem) {
    open("Name");
    then_press(VK_TAB);
    then_press(VK_RIGHT);
    then([] { type_text("x"); });
    then([] { EXPECT_EQ(text_of(page_controls().at(0)), "web1x"); });
    then([] { SetFocus(control(tree_id)); });
    then_press(VK_DOWN);
    then([] { EXPECT_EQ(text_of(page()), "Folder"); });
    EXPECT_EQ(run(), 0);
}

class EmptyWindow : public TestWindow {};

TEST_F(EmptyWindow, TabIsTakenThoughThereIsNowhereToGo) {
    MSG tab{};
    tab.hwnd = window;
    tab.message = WM_KEYDOWN;
    tab.wParam = VK_TAB;
    EXPECT_TRUE(handle_key(window, tab));
    EXPECT_EQ(GetFocus(), window);
}

} // namespace
