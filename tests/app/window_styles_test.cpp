#include "app/main_window_controls.h"
#include "support/page.h"
#include "support/program.h"
#include "window/main_handle.h"

#include <gmock/gmock.h>

namespace {

/// What the system itself sets and clears in a window's style as time goes on.
constexpr LONG_PTR of_system = WS_VISIBLE | WS_CLIPSIBLINGS | WS_DISABLED;

class WindowStyles : public ProgramTest {
protected:
    static void expect_style(HWND window, LONG_PTR style, LONG_PTR extended_style) {
        EXPECT_EQ(style_of(window) & ~of_system, style) << text_of(window);
        EXPECT_EQ(extended_style_of(window) & WS_EX_CLIENTEDGE, extended_style) << text_of(window);
    }
};

TEST_F(WindowStyles, OfTheMainWindow) {
    then([] {
        expect_style(main_window, WS_OVERLAPPEDWINDOW, 0);
        EXPECT_TRUE(IsWindowVisible(main_window));
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(WindowStyles, OfTheTree) {
    then([] {
        expect_style(control(tree_id),
                     WS_CHILD | WS_GROUP | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT |
                         TVS_SHOWSELALWAYS,
                     WS_EX_CLIENTEDGE);
        EXPECT_TRUE(IsWindowVisible(control(tree_id)));
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(WindowStyles, OfTheButtons) {
    then([] {
        expect_style(control(close_id), WS_CHILD | WS_GROUP | WS_TABSTOP, 0);
        expect_style(control(ok_id), WS_CHILD, 0);
        expect_style(control(test_connection_id), WS_CHILD, 0);
        EXPECT_EQ(text_of(control(ok_id)), "OK");
        EXPECT_EQ(text_of(control(test_connection_id)), "Test Connection");
        EXPECT_TRUE(IsWindowVisible(control(close_id)));
        EXPECT_TRUE(IsWindowVisible(control(ok_id)));
        EXPECT_FALSE(IsWindowVisible(control(test_connection_id)));
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(WindowStyles, EveryControlHasItsNumber) {
    then([] {
        EXPECT_EQ(class_of(GetDlgItem(main_window, 101)), "SysTreeView32");
        EXPECT_EQ(text_of(GetDlgItem(main_window, 103)), "Close");
        EXPECT_EQ(text_of(GetDlgItem(main_window, 104)), "OK");
        EXPECT_EQ(text_of(GetDlgItem(main_window, 105)), "Test Connection");
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(WindowStyles, EveryButtonHasTheSystemsFont) {
    then([] {
        for (const int id : {close_id, ok_id, test_connection_id})
            EXPECT_EQ(font_of(control(id)), static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT))) << id;
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(WindowStyles, TheClassHasTheArrowTheDialogBackgroundAndNoStyle) {
    WNDCLASSEXA found{};
    found.cbSize = sizeof found;
    then([&] { EXPECT_TRUE(GetClassInfoExA(GetModuleHandleA(nullptr), "trconfigclass", &found)); });
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(found.hCursor, LoadCursorA(nullptr, IDC_ARROW));
    EXPECT_EQ(found.hbrBackground, reinterpret_cast<HBRUSH>(INT_PTR{COLOR_BTNFACE + 1}));
    EXPECT_EQ(found.style, 0U);
    EXPECT_EQ(found.cbClsExtra, 0);
    EXPECT_EQ(found.cbWndExtra, 0);
    EXPECT_EQ(found.lpszMenuName, nullptr);
}

} // namespace
