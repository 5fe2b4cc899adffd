#include "support/page.h"
#include "support/test_window.h"
#include "support/thrown.h"
#include "support/user.h"
#include "window/guard.h"
#include "window/top_level.h"
#include "window/wait_window.h"

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

TEST_F(WaitWindowLife, IsASmallFrameWithoutButtonsCentredOverTheMainWindow) {
    RECT main{};
    GetWindowRect(main_window, &main);
    const WaitWindow wait("Please wait while stopping service....");
    const HWND window = shown();
    RECT at{};
    GetWindowRect(window, &at);
    EXPECT_EQ(at.right - at.left, 200);
    EXPECT_EQ(at.bottom - at.top, 75);
    EXPECT_EQ(at.left, main.left + (main.right - main.left - 200) / 2);
    EXPECT_EQ(at.top, main.top + (main.bottom - main.top - 75) / 2);
    EXPECT_EQ(text_of(window), "Tavrin Service Control");
    EXPECT_TRUE(IsWindowVisible(window));
    EXPECT_EQ(style_of(window) & ~LONG_PTR{WS_VISIBLE | WS_CLIPSIBLINGS}, LONG_PTR{WS_POPUP} | WS_DLGFRAME);
    EXPECT_EQ(extended_style_of(window) & WS_EX_DLGMODALFRAME, WS_EX_DLGMODALFRAME);
    EXPECT_EQ(GetWindow(window, GW_OWNER), main_window);
}

TEST_F(WaitWindowLife, ShowsATextThatCannotBeTypedInTheMiddleOfItsClientArea) {
    const WaitWindow wait("Please wait while starting service....");
    const HWND message = GetDlgItem(shown(), 106);
    EXPECT_EQ(class_of(message), "Edit");
    EXPECT_EQ(text_of(message), "Please wait while starting service....");
    EXPECT_EQ(style_of(message), WS_CHILD | WS_VISIBLE | ES_READONLY | ES_MULTILINE | ES_CENTER);
    EXPECT_EQ(extended_style_of(message) & WS_EX_CLIENTEDGE, 0);
    EXPECT_TRUE(IsWindowVisible(message));
    EXPECT_EQ(font_of(message), static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT)));
    const POINT client = client_size_of(shown());
    const Placement placed = placement_of(message);
    EXPECT_EQ(placed.x, 0);
    EXPECT_EQ(placed.width, client.x);
    EXPECT_EQ(placed.y, (client.y - placed.height) / 2);
    EXPECT_GT(placed.height, 0);
    EXPECT_LT(placed.height, client.y) << "as high as its lines, not as the window";
}

TEST_F(WaitWindowLife, HasAClassWithTheArrowTheDialogBackgroundAndNoStyle) {
    const WaitWindow wait("text");
    WNDCLASSEXA found{};
    found.cbSize = sizeof found;
    ASSERT_TRUE(GetClassInfoExA(GetModuleHandleA(nullptr), "tavrin_service_win", &found));
    EXPECT_EQ(found.hCursor, LoadCursorA(nullptr, IDC_ARROW));
    EXPECT_EQ(found.hbrBackground, reinterpret_cast<HBRUSH>(INT_PTR{COLOR_BTNFACE + 1}));
    EXPECT_EQ(found.style, 0U);
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

/// An exception of the owner when it becomes active again ends the step for which the window was shown.
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
