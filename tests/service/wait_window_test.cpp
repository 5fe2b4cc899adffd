#include "service/wait_window.h"
#include "support/page.h"
#include "support/test_window.h"
#include "support/thrown.h"
#include "support/user.h"
#include "window/guard.h"
#include "window/main_handle.h"

#include <gmock/gmock.h>
#include <string>

namespace {

class WaitWindowLife : public CleanSystem {
protected:
    void SetUp() override {
        main_window = CreateWindowExA(0, "Static", "main", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 100, 437,
                                      230, nullptr, nullptr, nullptr, nullptr);
        ASSERT_NE(main_window, nullptr);
    }
    void TearDown() override {
        DestroyWindow(main_window);
        main_window = nullptr;
    }

    /// The one that was opened last, which the user has before him; null when it is none.
    static HWND shown() {
        const HWND window = GetActiveWindow();
        return class_of(window) == "tavrin_service_win" ? window : nullptr;
    }
};

TEST_F(WaitWindowLife, IsSmallCaptionedAndCentredOverTheMainWindow) {
    RECT main{};
    GetWindowRect(main_window, &main);
    const WaitWindow wait("Please wait while stopping service....");
    const HWND window = shown();
    ASSERT_NE(window, nullptr);
    RECT at{};
    GetWindowRect(window, &at);
    EXPECT_EQ(at.right - at.left, 200);
    EXPECT_EQ(at.bottom - at.top, 75);
    EXPECT_EQ(at.left, main.left + (main.right - main.left - 200) / 2);
    EXPECT_EQ(at.top, main.top + (main.bottom - main.top - 75) / 2);
    EXPECT_EQ(text_of(window), "Tavrin Service Control");
    EXPECT_TRUE(IsWindowVisible(window));
}

TEST_F(WaitWindowLife, ShowsTheMessageInTheMiddleOfItsClientArea) {
    const WaitWindow wait("Please wait while starting service....");
    const HWND window = shown();
    const HWND message = GetDlgItem(window, 106);
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(text_of(message), "Please wait while starting service....");
    const LONG_PTR wanted = ES_READONLY | ES_MULTILINE | ES_CENTER;
    EXPECT_EQ(GetWindowLongPtrA(message, GWL_STYLE) & wanted, wanted);
    EXPECT_EQ(reinterpret_cast<HGDIOBJ>(SendMessageA(message, WM_GETFONT, 0, 0)),
              GetStockObject(DEFAULT_GUI_FONT));
    RECT client{};
    GetClientRect(window, &client);
    RECT placed{};
    GetWindowRect(message, &placed);
    EXPECT_EQ(placed.right - placed.left, client.right);
    EXPECT_LT(placed.bottom - placed.top, client.bottom) << "as high as its lines, not as the window";
}

TEST_F(WaitWindowLife, ClosesAtOnceAndPostsNoQuitMessage) {
    WaitWindow wait("text");
    const HWND window = shown();
    wait.close();
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(GetActiveWindow(), main_window);
    MSG message{};
    EXPECT_FALSE(PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
}

TEST_F(WaitWindowLife, LeavesAllOtherMessagesInTheQueueWhenItCloses) {
    WaitWindow first("other");
    const HWND other = shown();
    WaitWindow wait("text");
    const HWND window = shown();
    ASSERT_NE(window, other);
    PostMessageA(main_window, WM_CLOSE, 0, 0);
    PostMessageA(other, WM_CLOSE, 0, 0);
    PostMessageA(main_window, WM_APP + 7, 0, 0);
    PostQuitMessage(7);
    wait.close();
    EXPECT_FALSE(IsWindow(window));
    EXPECT_TRUE(IsWindow(other));
    MSG message{};
    EXPECT_TRUE(PeekMessageA(&message, main_window, WM_CLOSE, WM_CLOSE, PM_REMOVE));
    EXPECT_TRUE(PeekMessageA(&message, other, WM_CLOSE, WM_CLOSE, PM_REMOVE));
    EXPECT_TRUE(PeekMessageA(&message, main_window, WM_APP + 7, WM_APP + 7, PM_REMOVE));
    EXPECT_TRUE(PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.wParam, 7U);
}

/// Else another program's window would become active: the main window cannot.
TEST_F(WaitWindowLife, StaysOverADisabledMainWindowUntilMessagesAreHandled) {
    EnableWindow(main_window, FALSE);
    WaitWindow wait("text");
    const HWND window = shown();
    wait.close();
    EXPECT_TRUE(IsWindow(window));
    EnableWindow(main_window, TRUE);
    pump_messages();
    EXPECT_FALSE(IsWindow(window));
}

LRESULT CALLBACK throw_when_activated(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    const auto procedure = [&]() -> LRESULT {
        if (message == WM_ACTIVATE && LOWORD(wparam) != WA_INACTIVE)
            throw std::string("thrown");
        return DefWindowProcA(window, message, wparam, lparam);
    };
    return guarded(0, procedure, [] { return LRESULT{0}; });
}

/// What its owner throws when it becomes active again ends the step that the window stood for.
TEST_F(WaitWindowLife, HandsOnWhatIsThrownWhileItCloses) {
    WaitWindow wait("text");
    SetWindowLongPtrA(main_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&throw_when_activated));
    EXPECT_EQ(thrown_text([&] { wait.close(); }), "thrown");
    pump_messages();
}

TEST_F(WaitWindowLife, LeavesToItsCallerWhatIsThrownWhileItGoesByItself) {
    {
        const WaitWindow wait("text");
        SetWindowLongPtrA(main_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&throw_when_activated));
    }
    EXPECT_EQ(thrown_text([] { rethrow_kept(); }), "thrown");
    pump_messages();
}

TEST_F(WaitWindowLife, GoesWithAStepThatThrows) {
    HWND window = nullptr;
    const auto step = [&] {
        const WaitWindow wait("text");
        window = shown();
        throw std::string("broken");
    };
    EXPECT_EQ(thrown_text(step), "broken");
    EXPECT_NE(window, nullptr);
    EXPECT_FALSE(IsWindow(window));
}

TEST_F(WaitWindowLife, ClosesOnceOnly) {
    WaitWindow wait("text");
    wait.close();
    const WaitWindow other("other");
    wait.close();
    EXPECT_TRUE(IsWindow(shown()));
}

TEST_F(WaitWindowLife, OpensAgainAndAgain) {
    for (int i = 0; i < 3; ++i) {
        WaitWindow wait("text");
        const HWND window = shown();
        ASSERT_NE(window, nullptr);
        wait.close();
        EXPECT_FALSE(IsWindow(window));
    }
}

TEST(CentredText, StandsInTheMiddleRoundedTowardsZero) {
    EXPECT_EQ(centred_text_top(0, 46, 2, 13), 10);
    EXPECT_EQ(centred_text_top(0, 47, 2, 13), 10);
    EXPECT_EQ(centred_text_top(0, 20, 3, 13), -9);
    EXPECT_EQ(centred_text_top(4, 46, 2, 13), 8);
}

} // namespace
