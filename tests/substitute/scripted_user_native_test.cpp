#include "substitute/control.h"
#include "support/test_window.h"
#include "support/user.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class ScriptedUser : public TestWindow {};

TEST_F(ScriptedUser, AProgramThatWouldWaitForEverIsEnded) {
    MSG message{};
    EXPECT_DEATH(GetMessageA(&message, nullptr, 0, 0), "no scripted step of the user is left");
}

TEST_F(ScriptedUser, LeavingForAnotherProgramTakesActivityAndFocusAway) {
    const HWND edit = add("Edit", 0);
    SetFocus(edit);
    forget();
    substitute::leave_program();
    EXPECT_EQ(GetActiveWindow(), nullptr);
    EXPECT_EQ(GetFocus(), nullptr);
    EXPECT_EQ(count(WM_ACTIVATE), 1);
    EXPECT_THAT(commands(edit), ElementsAre(EN_KILLFOCUS));
    substitute::return_to_program();
    EXPECT_EQ(GetActiveWindow(), window);
    EXPECT_EQ(GetFocus(), window) << "not the control that had it";
    EXPECT_EQ(count(WM_ACTIVATE), 2);
}

TEST_F(ScriptedUser, WhoLeavesAMinimisedWindowIsTold) {
    ShowWindow(window, SW_MINIMIZE);
    forget();
    substitute::leave_program();
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0].message, WM_ACTIVATE);
    EXPECT_EQ(told[0].wparam, MAKEWPARAM(static_cast<int>(WA_INACTIVE), 1));
    ShowWindow(window, SW_RESTORE);
    EXPECT_EQ(GetActiveWindow(), window);
    EXPECT_EQ(GetFocus(), window);
}

TEST_F(ScriptedUser, AClickBringsAWindowInFrontFirst) {
    const HWND edit = add("Edit", 0);
    substitute::while_next_box([&] {
        EXPECT_NE(GetActiveWindow(), window);
        forget();
        substitute::click(edit);
    });
    MessageBoxA(nullptr, "t", "c", MB_OK);
    ASSERT_GE(told.size(), 2U);
    EXPECT_EQ(told[0].message, WM_ACTIVATE);
    EXPECT_EQ(LOWORD(told[0].wparam), WA_CLICKACTIVE);
    EXPECT_EQ(told[1].message, WM_SETFOCUS);
    EXPECT_EQ(GetFocus(), edit);
}

/// So it is under Wine with a real mouse.
TEST_F(ScriptedUser, AClickElsewhereClosesAnOpenListAndPutsItsChoiceBack) {
    const HWND combo = add("ComboBox", CBS_DROPDOWNLIST);
    const HWND button = add("Button", 0);
    for (const char* option : {"low", "high"})
        SendMessageA(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(option));
    substitute::click(combo);
    substitute::press(VK_DOWN);
    pump_messages();
    EXPECT_EQ(SendMessageA(combo, CB_GETCURSEL, 0, 0), 0);
    forget();
    substitute::click(button);
    pump_messages();
    EXPECT_EQ(SendMessageA(combo, CB_GETCURSEL, 0, 0), CB_ERR);
    EXPECT_EQ(SendMessageA(combo, CB_GETDROPPEDSTATE, 0, 0), FALSE);
    EXPECT_THAT(commands(combo), ElementsAre(CBN_SELENDCANCEL, CBN_CLOSEUP));
    EXPECT_TRUE(commands(button).empty());
    EXPECT_EQ(GetFocus(), combo);
}

/// So it is on Windows; Wine enables the owner of a box in any case.
TEST_F(ScriptedUser, AnOwnerThatWasDisabledBeforeABoxStaysSo) {
    EnableWindow(window, FALSE);
    MessageBoxA(window, "t", "c", MB_OK);
    EXPECT_FALSE(IsWindowEnabled(window));
}

} // namespace
