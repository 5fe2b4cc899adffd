#include "support/recorder.h"
#include "support/user.h"

#include <cstdio>
#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Focus : public RecorderTest {
protected:
    HWND window = nullptr;
    HWND first = nullptr;
    HWND second = nullptr;

    void SetUp() override {
        RecorderTest::SetUp();
        window = open("main", WS_OVERLAPPEDWINDOW | WS_VISIBLE);
        first = open_child("first", window);
        second = open_child("second", window);
        pump_messages();
        watch({WM_SETFOCUS, WM_KILLFOCUS, WM_ACTIVATE, WM_ENABLE});
    }
};

TEST_F(Focus, AShownWindowIsActiveAndHasTheFocusItself) {
    EXPECT_EQ(GetActiveWindow(), window);
    EXPECT_EQ(GetFocus(), window);
}

TEST_F(Focus, TheLoserIsToldBeforeTheWinner) {
    EXPECT_EQ(SetFocus(first), window);
    EXPECT_EQ(SetFocus(second), first);
    EXPECT_THAT(take_log(),
                ElementsAre("main killfocus", "first setfocus", "first killfocus", "second setfocus"));
    EXPECT_EQ(GetFocus(), second);
    SetFocus(second);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(Focus, ADisabledWindowOrOneInsideADisabledOneDoesNotGetIt) {
    EnableWindow(first, FALSE);
    const HWND inner = open_child("inner", first);
    EXPECT_EQ(SetFocus(first), nullptr);
    EXPECT_EQ(SetFocus(inner), nullptr);
    EXPECT_EQ(GetFocus(), window);
}

TEST_F(Focus, AHiddenWindowGetsIt) {
    ShowWindow(first, SW_HIDE);
    SetFocus(first);
    EXPECT_EQ(GetFocus(), first);
}

TEST_F(Focus, DisablingTheFocusedWindowTakesItAway) {
    SetFocus(first);
    take_log();
    EXPECT_FALSE(EnableWindow(first, FALSE)) << "it was enabled";
    EXPECT_EQ(GetFocus(), nullptr);
    EXPECT_THAT(take_log(), ElementsAre("first killfocus", "first enable"));
    EXPECT_TRUE(EnableWindow(first, FALSE)) << "it was disabled";
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_TRUE(EnableWindow(first, TRUE));
    EXPECT_FALSE(IsWindowEnabled(nullptr));
    EXPECT_TRUE(IsWindowEnabled(first));
    EXPECT_EQ(GetFocus(), nullptr) << "nothing gives it back";
}

TEST_F(Focus, DisablingTheParentOfTheFocusedWindowLeavesTheFocus) {
    SetFocus(first);
    EnableWindow(window, FALSE);
    EXPECT_EQ(GetFocus(), first);
    EXPECT_TRUE(IsWindowEnabled(first)) << "only the window itself is asked";
}

TEST_F(Focus, HidingTheFocusedChildHandsItToTheParent) {
    SetFocus(first);
    take_log();
    ShowWindow(first, SW_HIDE);
    EXPECT_EQ(GetFocus(), window);
    EXPECT_THAT(take_log(), ElementsAre("first killfocus", "main setfocus"));
}

TEST_F(Focus, DestroyingTheFocusedChildHandsItToTheParent) {
    SetFocus(first);
    take_log();
    DestroyWindow(first);
    EXPECT_EQ(GetFocus(), window);
    EXPECT_THAT(take_log(), ElementsAre("first killfocus", "main setfocus"));
}

TEST_F(Focus, HidingTheParentOfTheFocusedWindowLeavesTheFocus) {
    const HWND inner = open_child("inner", first);
    SetFocus(inner);
    ShowWindow(first, SW_HIDE);
    EXPECT_EQ(GetFocus(), inner);
}

TEST_F(Focus, DestroyingTheParentOfTheFocusedWindowLeavesNoFocus) {
    const HWND inner = open_child("inner", first);
    SetFocus(inner);
    watch({WM_SETFOCUS, WM_KILLFOCUS, WM_ACTIVATE, WM_DESTROY, WM_NCDESTROY});
    DestroyWindow(first);
    EXPECT_EQ(GetFocus(), nullptr);
    EXPECT_EQ(GetActiveWindow(), window);
    EXPECT_THAT(take_log(),
                ElementsAre("first destroy", "inner destroy", "inner ncdestroy", "first ncdestroy"));
}

TEST_F(Focus, AnotherTopLevelWindowTakesActivationAndFocus) {
    SetFocus(first);
    take_log();
    const HWND popup = open("popup", WS_POPUP | WS_VISIBLE, window);
    EXPECT_EQ(GetActiveWindow(), popup);
    EXPECT_EQ(GetFocus(), popup);
    EXPECT_THAT(take_log(),
                ElementsAre("main activate", "popup activate", "first killfocus", "popup setfocus"));
    DestroyWindow(popup);
    EXPECT_EQ(GetActiveWindow(), window);
    EXPECT_EQ(GetFocus(), window) << "not the child that had it";
    EXPECT_THAT(take_log(),
                ElementsAre("popup activate", "main activate", "popup killfocus", "main setfocus"));
}

TEST_F(Focus, FocusInAnotherTopLevelWindowActivatesThatWindow) {
    const HWND popup = open("popup", WS_POPUP | WS_VISIBLE);
    SetFocus(first);
    EXPECT_EQ(GetActiveWindow(), window);
    EXPECT_EQ(GetFocus(), first);
    DestroyWindow(popup);
    EXPECT_EQ(GetFocus(), first);
}

TEST_F(Focus, KeysGoToTheFocusAtTheTimeTheyAreHandled) {
    SetFocus(first);
    int keys = 0;
    answer(WM_KEYDOWN, [&](HWND handle, WPARAM, LPARAM) -> LRESULT {
        ++keys;
        EXPECT_EQ(handle, keys == 1 ? first : second);
        SetFocus(second);
        return 0;
    });
    press_key(VK_RIGHT);
    press_key(VK_RIGHT);
    pump_messages();
    EXPECT_EQ(keys, 2);
}

TEST_F(Focus, AChildOfAMinimisedWindowDoesNotGetIt) {
    ShowWindow(window, SW_MINIMIZE);
    SetFocus(first);
    EXPECT_NE(GetFocus(), first);
    ShowWindow(window, SW_RESTORE);
    SetFocus(first);
    EXPECT_EQ(GetFocus(), first);
}

TEST_F(Focus, ADisabledMainWindowStillHandsOutKeysToItsFocusedChild) {
    SetFocus(first);
    EnableWindow(window, FALSE);
    int keys = 0;
    answer(WM_KEYDOWN, [&](HWND, WPARAM, LPARAM) -> LRESULT { return ++keys; });
    press_key(VK_RIGHT);
    pump_messages();
    EXPECT_EQ(keys, 1);
}

} // namespace
