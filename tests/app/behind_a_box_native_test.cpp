// The boxes of Test Connection and Execute have no owner, so the user can still use the window behind them.
#include "app/main_window_controls.h"
#include "substitute/control.h"
#include "support/program.h"
#include "support/registry.h"
#include "window/top_level.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

constexpr char boxes_spec[] = "SOFTWARE\\TavrinTests\\Agent\nAgent\n"
                              "!All\n$Name\nName\nh\nString\n$Signal\nTavrinSignal\nh\nSignalEvent\n"
                              "$Folder\nFolder\nh\nDirectory\n"
                              "$Test\n\nh\nConnectionTest\nName\nName\nName\nPort\n";

void press_execute() { SendMessageA(page_controls().at(0), BM_CLICK, 0, 0); }
void click_execute() { substitute::click(page_controls().at(0)); }
/// Ends the program with a message, because there is no entry "Port".
void press_failing_test() { SendMessageA(control(test_connection_id), BM_CLICK, 0, 0); }

/// Clicks beside all controls, so the control that had the focus gets it again.
void click_into_window() { substitute::click(main_window, {3, 3}); }

class BehindABox : public ProgramTest {
protected:
    void SetUp() override {
        spec_file("A", boxes_spec);
        then([] { select("Signal"); });
    }
};

TEST_F(BehindABox, TabMovesTheFocus) {
    HWND focus = nullptr;
    boxes.while_shown([] {
        click_into_window();
        substitute::press(VK_TAB);
    });
    then(press_execute);
    then([&] { focus = GetFocus(); });
    then([&] { EXPECT_EQ(focus, control(test_connection_id)); });
    EXPECT_EQ(run(), 0);
}

TEST_F(BehindABox, EnterPressesTheButtonThatHasTheFocus) {
    boxes.while_shown([] {
        click_into_window();
        substitute::press(VK_RETURN);
    });
    then(click_execute);
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(boxes.captions(), ElementsAre("Action taken", "Action taken"));
}

/// A disabled window gets no keys, like the disabled owner of a dialog.
TEST_F(BehindABox, KeysOfADisabledWindowDoNothing) {
    boxes.while_shown([] {
        click_into_window();
        substitute::press(VK_TAB);
        substitute::press(VK_RETURN);
        EnableWindow(main_window, FALSE);
    });
    then(press_execute);
    then([] { EnableWindow(main_window, TRUE); });
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(boxes.captions(), ElementsAre("Action taken"));
}

TEST_F(BehindABox, TheKeysNeedNoHookToWorkInTheProgramsOwnLoop) {
    substitute::fail_call("SetWindowsHookExA");
    HWND focus = nullptr;
    then([] { SetFocus(control(tree_id)); });
    then([] { substitute::press(VK_TAB); });
    then([&] { focus = GetFocus(); });
    then([&] { EXPECT_EQ(focus, page_controls().at(0)); });
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(substitute::call_count("UnhookWindowsHookEx"), 0);
}

TEST_F(BehindABox, AFatalTextIsShownAtOnce) {
    boxes.answer(IDOK);
    boxes.answer(IDOK);
    boxes.while_shown(press_failing_test);
    then(press_execute);
    EXPECT_EQ(run(), 1);
    EXPECT_THAT(boxes.captions(), ElementsAre("Action taken", "Error!"));
    EXPECT_EQ(boxes.seen()[1].text, "Did not find anything with the title \"Port\"");
    EXPECT_EQ(boxes.answers_left(), 1U) << "nobody had to answer the first box";
}

TEST_F(BehindABox, AFatalTextIsShownAtOnceHoweverManyBoxesThereAre) {
    for (int box = 0; box < 4; ++box)
        boxes.answer(IDOK);
    boxes.while_shown(press_execute);
    boxes.while_shown(press_execute);
    boxes.while_shown(press_failing_test);
    then(press_execute);
    EXPECT_EQ(run(), 1);
    EXPECT_THAT(boxes.captions(), ElementsAre("Action taken", "Action taken", "Action taken", "Error!"));
    EXPECT_EQ(boxes.answers_left(), 3U) << "nobody had to answer the first boxes";
}

TEST_F(BehindABox, AFatalTextEndsTheQuestionsOfOkToo) {
    substitute::set_service("NoService", {});
    spec_file("B", "SOFTWARE\\TavrinTests\\Agent\nOther\nNoService\n!All\n$Colour\nColour\nh\nString\n");
    then_edit("Colour", "red");
    boxes.answer(IDYES);
    boxes.answer(IDOK);
    boxes.while_shown([] {
        substitute::fail_call("CreateWindowExA");
        select("Signal");
    });
    then([] { SendMessageA(control(ok_id), BM_CLICK, 0, 0); });
    EXPECT_EQ(run(), 1);
    EXPECT_THAT(boxes.captions(), ElementsAre("Restart Other Service?", "Error!"));
    EXPECT_EQ(boxes.answers_left(), 1U);
    EXPECT_EQ(substitute::service_counts("NoService").stops, 0);
}

} // namespace
