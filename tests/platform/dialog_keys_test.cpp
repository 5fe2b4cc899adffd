#include "support/test_window.h"
#include "support/user.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The keyboard navigation that IsDialogMessageA gives a window that is not a dialog.
class DialogKeys : public TestWindow {
protected:
    HWND tree = nullptr;
    HWND close = nullptr;
    HWND plain = nullptr;
    HWND edit = nullptr;

    /// Like the main window: two tab stops in groups of their own, a button without WS_TABSTOP.
    void SetUp() override {
        TestWindow::SetUp();
        tree = add("SysTreeView32", WS_GROUP | WS_TABSTOP);
        close = add("Button", WS_GROUP | WS_TABSTOP, "Close");
        plain = add("Button", 0, "OK");
        edit = add("Edit", ES_AUTOHSCROLL | WS_TABSTOP, "text", WS_EX_CLIENTEDGE);
        forget();
    }
    /// Handles one posted key as the program's loop does. Whether IsDialogMessageA took it.
    bool navigate(HWND target, int key) {
        MSG message{target, WM_KEYDOWN, static_cast<WPARAM>(key), 1, 0, {0, 0}};
        return IsDialogMessageA(window, &message) != 0;
    }
    HWND after(HWND from, int key) {
        SetFocus(from);
        EXPECT_TRUE(navigate(from, key));
        return GetFocus();
    }
};

TEST_F(DialogKeys, EnterPressesWhatHasTheIdOfOk) {
    EXPECT_TRUE(navigate(tree, VK_RETURN));
    ASSERT_EQ(count(WM_COMMAND), 1);
    EXPECT_EQ(told.back().message, static_cast<UINT>(WM_COMMAND));
    EXPECT_EQ(told.back().wparam, MAKEWPARAM(IDOK, BN_CLICKED));
    EXPECT_EQ(told.back().lparam, reinterpret_cast<LPARAM>(tree)) << "id 1 is the first control here";
}

TEST_F(DialogKeys, EnterDoesNotPressAFocusedPlainButton) {
    SetFocus(close);
    forget();
    EXPECT_TRUE(navigate(close, VK_RETURN));
    EXPECT_THAT(commands(close), IsEmpty());
}

TEST_F(DialogKeys, EscapePressesWhatHasTheIdOfCancel) {
    EXPECT_TRUE(navigate(tree, VK_ESCAPE));
    ASSERT_EQ(count(WM_COMMAND), 1);
    EXPECT_EQ(told.back().wparam, MAKEWPARAM(IDCANCEL, 0));
    EXPECT_EQ(told.back().lparam, reinterpret_cast<LPARAM>(close)) << "id 2 is the second control here";
}

TEST_F(DialogKeys, ArrowsOnAButtonAreTakenAndMoveNothing) {
    EXPECT_EQ(after(close, VK_RIGHT), close);
    EXPECT_EQ(after(plain, VK_LEFT), plain);
    EXPECT_EQ(after(close, VK_DOWN), close);
}

TEST_F(DialogKeys, ControlsThatWantArrowsGetThem) {
    EXPECT_EQ(after(tree, VK_DOWN), tree);
    EXPECT_EQ(after(edit, VK_RIGHT), edit);
}

TEST_F(DialogKeys, EverythingElseIsDispatchedToTheControl) {
    SetFocus(edit);
    SendMessageA(edit, EM_SETSEL, 4, 4);
    MSG message{edit, WM_CHAR, 'x', 1, 0, {0, 0}};
    EXPECT_TRUE(IsDialogMessageA(window, &message));
    EXPECT_EQ(text_of(edit), "textx");
    MSG own{window, WM_APP, 0, 0, 0, {0, 0}};
    forget();
    EXPECT_TRUE(IsDialogMessageA(window, &own));
    EXPECT_EQ(count(WM_APP), 1);
}

TEST_F(DialogKeys, MessagesOfOtherWindowsAreLeftAlone) {
    const HWND popup =
        CreateWindowExA(0, "Static", "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    MSG other{popup, WM_KEYDOWN, VK_TAB, 1, 0, {0, 0}};
    EXPECT_FALSE(IsDialogMessageA(window, &other));
    MSG of_thread{nullptr, WM_APP, 0, 0, 0, {0, 0}};
    EXPECT_FALSE(IsDialogMessageA(window, &of_thread));
    EXPECT_FALSE(IsDialogMessageA(nullptr, &other));
    DestroyWindow(popup);
}

TEST_F(DialogKeys, SpacePressesTheFocusedButton) {
    SetFocus(close);
    forget();
    for (const UINT number : {UINT{WM_KEYDOWN}, UINT{WM_KEYUP}}) {
        MSG message{close, number, VK_SPACE, number == WM_KEYDOWN ? 1 : static_cast<LPARAM>(0xC0000001),
                    0,     {0, 0}};
        EXPECT_TRUE(IsDialogMessageA(window, &message));
    }
    EXPECT_THAT(commands(close), ElementsAre(BN_CLICKED));
}

} // namespace
