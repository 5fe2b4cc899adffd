#include "support/boxes.h"
#include "support/recorder.h"
#include "support/user.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class MessageBoxes : public RecorderTest {
protected:
    Boxes boxes;
    HWND window = nullptr;
    HWND child = nullptr;

    void SetUp() override {
        RecorderTest::SetUp();
        window = open("main", WS_OVERLAPPEDWINDOW | WS_VISIBLE);
        child = open_child("child", window);
        pump_messages();
    }
};

TEST_F(MessageBoxes, AreAnsweredAndRemembered) {
    boxes.answer(IDNO);
    EXPECT_EQ(
        MessageBoxA(window, "Do you wish to do this now?", "Restart Service?", MB_YESNO | MB_ICONQUESTION),
        IDNO);
    EXPECT_EQ(MessageBoxA(nullptr, "two\n\nlines", "Error!", MB_OK | MB_ICONEXCLAMATION), IDOK);
    const auto seen = boxes.seen();
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[0].text, "Do you wish to do this now?");
    EXPECT_EQ(seen[0].caption, "Restart Service?");
    EXPECT_EQ(seen[0].style, static_cast<UINT>(MB_YESNO | MB_ICONQUESTION));
    EXPECT_EQ(seen[0].owner, window);
    EXPECT_EQ(seen[1].text, "two\n\nlines");
    EXPECT_EQ(seen[1].caption, "Error!");
    EXPECT_EQ(seen[1].style, static_cast<UINT>(MB_OK | MB_ICONEXCLAMATION));
    EXPECT_EQ(seen[1].owner, nullptr);
}

TEST_F(MessageBoxes, EveryIconIsToldApart) {
    for (const UINT icon : {MB_ICONERROR, MB_ICONQUESTION, MB_ICONEXCLAMATION, MB_ICONINFORMATION}) {
        MessageBoxA(nullptr, "text", "caption", MB_OK | icon);
        EXPECT_EQ(boxes.seen().back().style, icon);
    }
}

TEST_F(MessageBoxes, AnswersGoToBoxesInOrder) {
    boxes.answer(IDYES);
    boxes.answer(IDNO);
    EXPECT_EQ(boxes.answers_left(), 2U);
    EXPECT_EQ(MessageBoxA(window, "a", "a", MB_YESNO), IDYES);
    EXPECT_EQ(MessageBoxA(window, "b", "b", MB_YESNO), IDNO);
    EXPECT_EQ(boxes.answers_left(), 0U);
}

TEST_F(MessageBoxes, DisableTheirOwnerWhileTheyAreShown) {
    bool enabled = true;
    boxes.while_shown([&] { enabled = IsWindowEnabled(window) != 0; });
    MessageBoxA(window, "text", "caption", MB_OK);
    EXPECT_FALSE(enabled);
    EXPECT_TRUE(IsWindowEnabled(window));
}

TEST_F(MessageBoxes, WithoutOwnerLeaveTheOtherWindowsEnabled) {
    bool enabled = false;
    boxes.while_shown([&] { enabled = IsWindowEnabled(window) != 0; });
    MessageBoxA(nullptr, "text", "caption", MB_OK);
    EXPECT_TRUE(enabled);
}

TEST_F(MessageBoxes, LetPostedMessagesThrough) {
    int handled = 0;
    answer(WM_APP, [&](HWND, WPARAM, LPARAM) -> LRESULT { return ++handled; });
    PostMessageA(window, WM_APP, 0, 0);
    MessageBoxA(nullptr, "text", "caption", MB_OK);
    EXPECT_EQ(handled, 1);
}

TEST_F(MessageBoxes, TakeTheFocusAndGiveItToTheWindowItself) {
    SetFocus(child);
    HWND during = window;
    boxes.while_shown([&] { during = GetFocus(); });
    watch({WM_SETFOCUS, WM_KILLFOCUS, WM_ACTIVATE, WM_ENABLE});
    MessageBoxA(window, "text", "caption", MB_OK);
    EXPECT_THAT(take_log(), ElementsAre("main enable", "main activate", "child killfocus", "main enable",
                                        "main activate", "main setfocus"));
    EXPECT_NE(during, child);
    EXPECT_EQ(GetFocus(), window) << "not the control that had it";
    EXPECT_EQ(GetActiveWindow(), window);
}

TEST_F(MessageBoxes, WithoutOwnerMoveTheFocusAlike) {
    SetFocus(child);
    watch({WM_SETFOCUS, WM_KILLFOCUS, WM_ACTIVATE, WM_ENABLE});
    MessageBoxA(nullptr, "text", "caption", MB_OK);
    EXPECT_THAT(take_log(),
                ElementsAre("main activate", "child killfocus", "main activate", "main setfocus"));
    EXPECT_EQ(GetFocus(), window);
}

TEST_F(MessageBoxes, WithAnOwnerThatIsGoneAreNotShown) {
    const HWND gone = open("gone", WS_POPUP);
    DestroyWindow(gone);
    EXPECT_NE(MessageBoxA(gone, "text", "caption", MB_OK), IDOK);
    EXPECT_TRUE(boxes.seen().empty());
}

} // namespace
