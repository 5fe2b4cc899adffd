#include "support/test_window.h"
#include "support/user.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Button : public TestWindow {
protected:
    static LRESULT check_of(HWND box) { return SendMessageA(box, BM_GETCHECK, 0, 0); }
};

TEST_F(Button, AClickIsReportedOnce) {
    const HWND button = add("Button", BS_PUSHBUTTON, "OK");
    click_on(button);
    pump_messages();
    EXPECT_THAT(commands(button), ElementsAre(BN_CLICKED));
    EXPECT_EQ(GetFocus(), button);
}

TEST_F(Button, TheReportCarriesIdAndHandle) {
    const HWND button = add("Button", BS_PUSHBUTTON, "OK");
    forget();
    SendMessageA(button, BM_CLICK, 0, 0);
    for (const Told& each : told) {
        if (each.message == WM_COMMAND) {
            EXPECT_EQ(LOWORD(each.wparam), GetDlgCtrlID(button));
            EXPECT_EQ(each.lparam, reinterpret_cast<LPARAM>(button));
        }
    }
    EXPECT_EQ(count(WM_COMMAND), 1);
}

TEST_F(Button, SpacePressesTheFocusedButtonWhenItComesUp) {
    const HWND button = add("Button", BS_PUSHBUTTON, "OK");
    SetFocus(button);
    SendMessageA(button, WM_KEYDOWN, VK_SPACE, 1);
    EXPECT_THAT(commands(button), IsEmpty());
    SendMessageA(button, WM_KEYUP, VK_SPACE, 1);
    EXPECT_THAT(commands(button), ElementsAre(BN_CLICKED));
    press_key(VK_SPACE);
    pump_messages();
    EXPECT_THAT(commands(button), ElementsAre(BN_CLICKED, BN_CLICKED));
}

TEST_F(Button, LosingTheFocusBeforeSpaceComesUpCancelsThePress) {
    const HWND button = add("Button", BS_PUSHBUTTON, "OK");
    SetFocus(button);
    SendMessageA(button, WM_KEYDOWN, VK_SPACE, 1);
    SetFocus(window);
    SendMessageA(button, WM_KEYUP, VK_SPACE, 1);
    EXPECT_THAT(commands(button), IsEmpty());
}

TEST_F(Button, OtherKeysDoNothing) {
    const HWND button = add("Button", BS_PUSHBUTTON, "OK");
    SetFocus(button);
    press_key(VK_RETURN);
    type_text("x");
    pump_messages();
    EXPECT_THAT(commands(button), IsEmpty());
}

TEST_F(Button, ADisabledOrHiddenButtonTakesNoClicks) {
    const HWND disabled = add("Button", BS_PUSHBUTTON | WS_DISABLED, "OK");
    const HWND hidden = add("Button", BS_PUSHBUTTON, "OK");
    ShowWindow(hidden, SW_HIDE);
    click_on(disabled);
    click_on(hidden);
    pump_messages();
    EXPECT_THAT(commands(disabled), IsEmpty());
    EXPECT_THAT(commands(hidden), IsEmpty());
}

TEST_F(Button, NothingInADisabledWindowTakesClicks) {
    const HWND button = add("Button", BS_PUSHBUTTON, "OK");
    EnableWindow(window, FALSE);
    click_on(button);
    pump_messages();
    EXPECT_THAT(commands(button), IsEmpty());
}

TEST_F(Button, AnAutomaticCheckBoxTogglesAndReportsEachTime) {
    const HWND box = add("Button", BS_AUTOCHECKBOX, "Enabled");
    EXPECT_EQ(check_of(box), static_cast<LRESULT>(BST_UNCHECKED));
    click_on(box);
    pump_messages();
    EXPECT_EQ(check_of(box), static_cast<LRESULT>(BST_CHECKED));
    press_key(VK_SPACE);
    pump_messages();
    EXPECT_EQ(check_of(box), static_cast<LRESULT>(BST_UNCHECKED));
    EXPECT_THAT(commands(box), ElementsAre(BN_CLICKED, BN_CLICKED));
}

TEST_F(Button, WhenTheCheckBoxReportsItHasToggledAlready) {
    const HWND box = add("Button", BS_AUTOCHECKBOX, "Enabled");
    SendMessageA(box, BM_CLICK, 0, 0);
    EXPECT_EQ(check_of(box), static_cast<LRESULT>(BST_CHECKED));
    EXPECT_THAT(commands(box), ElementsAre(BN_CLICKED));
}

TEST_F(Button, SettingTheCheckReportsNothing) {
    const HWND box = add("Button", BS_AUTOCHECKBOX, "Enabled");
    SendMessageA(box, BM_SETCHECK, BST_CHECKED, 0);
    EXPECT_EQ(check_of(box), static_cast<LRESULT>(BST_CHECKED));
    EXPECT_THAT(commands(box), IsEmpty());
}

TEST_F(Button, ADisabledCheckBoxKeepsItsCheck) {
    const HWND box = add("Button", BS_AUTOCHECKBOX, "Delete");
    EnableWindow(box, FALSE);
    click_on(box);
    pump_messages();
    EXPECT_EQ(check_of(box), static_cast<LRESULT>(BST_UNCHECKED));
    EXPECT_FALSE(IsWindowEnabled(box));
}

TEST_F(Button, ItsTextAndFontAreKept) {
    const HWND button = add("Button", BS_PUSHBUTTON, "Close");
    EXPECT_EQ(SendMessageA(button, WM_GETFONT, 0, 0), 0);
    const auto font = reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT));
    SendMessageA(button, WM_SETFONT, font, FALSE);
    EXPECT_EQ(SendMessageA(button, WM_GETFONT, 0, 0), static_cast<LRESULT>(font));
    SetWindowTextA(button, "Cancel");
    EXPECT_EQ(text_of(button), "Cancel");
}

TEST_F(Button, KindsTellTheDialogNavigationWhatTheyAre) {
    const auto code = [this](DWORD kind) {
        return SendMessageA(add("Button", kind, "b"), WM_GETDLGCODE, 0, 0);
    };
    EXPECT_EQ(code(BS_PUSHBUTTON), DLGC_BUTTON | DLGC_UNDEFPUSHBUTTON);
    EXPECT_EQ(code(BS_AUTOCHECKBOX), DLGC_BUTTON);
    EXPECT_EQ(code(BS_GROUPBOX), DLGC_STATIC);
    EXPECT_EQ(SendMessageA(add("Static", 0, "s"), WM_GETDLGCODE, 0, 0), DLGC_STATIC);
}

TEST_F(Button, AGroupBoxPassesNothingOnByItself) {
    const HWND box = add("Button", BS_GROUPBOX, "title");
    const HWND inner = add_to(box, "Button", BS_PUSHBUTTON, "b");
    forget();
    SendMessageA(inner, BM_CLICK, 0, 0);
    EXPECT_EQ(count(WM_COMMAND), 0) << "reports go to the parent alone";
}

TEST_F(Button, AProgramMayClickEvenADisabledButton) {
    const HWND button = add("Button", BS_PUSHBUTTON | WS_DISABLED, "b");
    SendMessageA(button, BM_CLICK, 0, 0);
    EXPECT_THAT(commands(button), ElementsAre(BN_CLICKED));
}

} // namespace
