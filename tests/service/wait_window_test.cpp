#include "platform/main_window.h"
#include "service/wait_window.h"
#include "support/test_window.h"
#include "support/user.h"

#include <gmock/gmock.h>
#include <string>

namespace {

class WaitWindow : public CleanSystem {
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
};

TEST_F(WaitWindow, IsSmallCaptionedAndCentredOverTheMainWindow) {
    RECT main{};
    GetWindowRect(main_window, &main);
    const HWND window = open_wait_window("Please wait while stopping service....");
    ASSERT_NE(window, nullptr);
    RECT at{};
    GetWindowRect(window, &at);
    EXPECT_EQ(at.right - at.left, 200);
    EXPECT_EQ(at.bottom - at.top, 75);
    EXPECT_EQ(at.left, main.left + (main.right - main.left - 200) / 2);
    EXPECT_EQ(at.top, main.top + (main.bottom - main.top - 75) / 2);
    EXPECT_EQ(text_of(window), "Tavrin Service Control");
    EXPECT_TRUE(IsWindowVisible(window));
    DestroyWindow(window);
}

TEST_F(WaitWindow, ShowsTheMessageInTheMiddleOfItsClientArea) {
    const HWND window = open_wait_window("Please wait while starting service....");
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
    DestroyWindow(window);
}

TEST_F(WaitWindow, ClosesWhenItsMessageIsHandledAndPostsNoQuitMessage) {
    const HWND window = open_wait_window("text");
    close_wait_window(window);
    EXPECT_TRUE(IsWindow(window)) << "closed by a posted message";
    pump_messages();
    EXPECT_FALSE(IsWindow(window));
    MSG message{};
    EXPECT_FALSE(PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
}

TEST_F(WaitWindow, ClosingNoWindowDoesNothing) { close_wait_window(nullptr); }

TEST_F(WaitWindow, OpensAgainAndAgain) {
    for (int i = 0; i < 3; ++i) {
        const HWND window = open_wait_window("text");
        ASSERT_NE(window, nullptr);
        close_wait_window(window);
        pump_messages();
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
