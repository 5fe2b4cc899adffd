#include "service/wait_window.h"
#include "support/page.h"
#include "support/test_window.h"
#include "window/main_handle.h"

#include <gmock/gmock.h>
#include <optional>

namespace {

class WaitWindowLook : public CleanSystem {
protected:
    void SetUp() override {
        main_window = CreateWindowExA(0, "Static", "main", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 100, 436,
                                      229, nullptr, nullptr, nullptr, nullptr);
        wait.emplace("Please wait while stopping service....");
        window = FindWindowA("tavrin_service_win", "Tavrin Service Control");
        ASSERT_NE(window, nullptr);
        message = GetDlgItem(window, 106);
        ASSERT_NE(message, nullptr);
    }
    void TearDown() override {
        wait.reset();
        DestroyWindow(main_window);
        main_window = nullptr;
    }

    std::optional<WaitWindow> wait;
    HWND window = nullptr;
    HWND message = nullptr;
};

TEST_F(WaitWindowLook, AFrameWithoutACaptionBarsButtons) {
    EXPECT_EQ(style_of(window) & ~LONG_PTR{WS_VISIBLE | WS_CLIPSIBLINGS}, LONG_PTR{WS_POPUP} | WS_DLGFRAME);
    EXPECT_EQ(extended_style_of(window) & WS_EX_DLGMODALFRAME, WS_EX_DLGMODALFRAME);
    EXPECT_TRUE(IsWindowVisible(window));
    EXPECT_EQ(GetWindow(window, GW_OWNER), main_window);
}

TEST_F(WaitWindowLook, ATextThatIsShownAndCannotBeTyped) {
    EXPECT_EQ(class_of(message), "Edit");
    EXPECT_EQ(style_of(message), WS_CHILD | WS_VISIBLE | ES_READONLY | ES_MULTILINE | ES_CENTER);
    EXPECT_EQ(extended_style_of(message) & WS_EX_CLIENTEDGE, 0);
    EXPECT_TRUE(IsWindowVisible(message));
}

TEST_F(WaitWindowLook, TheTextStandsAtTheLeftEdgeAndInTheMiddle) {
    RECT client{};
    GetClientRect(window, &client);
    const Placement placed = placement_of(message);
    EXPECT_EQ(placed.x, 0);
    EXPECT_EQ(placed.width, client.right);
    EXPECT_EQ(placed.y, (client.bottom - placed.height) / 2);
    EXPECT_GT(placed.height, 0);
}

TEST_F(WaitWindowLook, TheClassHasTheArrowTheDialogBackgroundAndNoStyle) {
    WNDCLASSEXA found{};
    found.cbSize = sizeof found;
    ASSERT_TRUE(GetClassInfoExA(GetModuleHandleA(nullptr), "tavrin_service_win", &found));
    EXPECT_EQ(found.hCursor, LoadCursorA(nullptr, IDC_ARROW));
    EXPECT_EQ(found.hbrBackground, reinterpret_cast<HBRUSH>(INT_PTR{COLOR_BTNFACE + 1}));
    EXPECT_EQ(found.style, 0U);
}

} // namespace
