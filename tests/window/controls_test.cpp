#include "window/controls.h"

#include "support/page.h"
#include "support/refusing_class.h"
#include "support/thrown.h"

#include <gmock/gmock.h>

namespace {

class Controls : public TestWindow {
protected:
    HWND button(const ControlDescription& description) { return create_control(window, description); }
};

TEST_F(Controls, AreVisibleOnePixelLargeWithTheStockFontUnlessToldOtherwise) {
    const HWND control = button({.window_class = "Button"});
    EXPECT_EQ(text_of(control), "");
    EXPECT_EQ(style_of(control), WS_CHILD | WS_VISIBLE);
    EXPECT_EQ(GetParent(control), window);
    EXPECT_EQ(GetDlgCtrlID(control), -1);
    EXPECT_EQ(placement_of(control), (Placement{0, 0, 1, 1}));
    EXPECT_EQ(font_of(control), static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT)));
}

TEST_F(Controls, AreMadeAsTheyAreDescribed) {
    const HWND control = button({.window_class = "Button",
                                 .text = "Test",
                                 .style = WS_TABSTOP,
                                 .extended_style = WS_EX_CLIENTEDGE,
                                 .hidden = true,
                                 .identifier = 105,
                                 .placement = {.x = 5, .y = 6, .width = 70, .height = 20},
                                 .has_stock_font = false});
    EXPECT_EQ(text_of(control), "Test");
    EXPECT_EQ(style_of(control), WS_CHILD | WS_TABSTOP);
    EXPECT_EQ(extended_style_of(control) & WS_EX_CLIENTEDGE, WS_EX_CLIENTEDGE);
    EXPECT_EQ(GetDlgItem(window, 105), control);
    EXPECT_EQ(placement_of(control), (Placement{5, 6, 70, 20}));
    EXPECT_EQ(font_of(control), nullptr);
}

TEST_F(Controls, ThatCannotBeMadeAreFatalWithTheirText) {
    const RefusingClass refusing("Button");
    EXPECT_EQ(thrown_text([&] { button({.window_class = "Button", .failure = "Unable to create it"}); }),
              "Unable to create it");
}

TEST_F(Controls, ThatCannotBeMadeAreDoneWithoutWhenTheyHaveNone) {
    const RefusingClass refusing("Button");
    EXPECT_EQ(button({.window_class = "Button"}), nullptr);
}

TEST_F(Controls, AreForgottenWhenTheyAreDestroyed) {
    HWND control = button({.window_class = "Button"});
    const HWND destroyed = control;
    destroy_control(control);
    EXPECT_EQ(control, nullptr);
    EXPECT_FALSE(IsWindow(destroyed));
}

TEST_F(Controls, StandWhereTheyArePlaced) {
    const HWND control = button({.window_class = "Button"});
    place(control, {.x = 30, .y = 20, .width = 100, .height = 50});
    EXPECT_EQ(placement_of(control), (Placement{30, 20, 100, 50}));
    const RECT client = client_rectangle(control);
    EXPECT_EQ(client.left, 0);
    EXPECT_EQ(client.top, 0);
    EXPECT_EQ(client.right, 100);
    EXPECT_EQ(client.bottom, 50);
}

TEST_F(Controls, GiveTheirTextsUpToALimit) {
    const std::string text(1024, 'x');
    const HWND control = button({.window_class = "Edit", .text = text.c_str()});
    EXPECT_EQ(control_text(control), text.substr(1));
}

TEST_F(Controls, ReportWhatTheySayThemselves) {
    const HWND control = button({.window_class = "Button"});
    const auto said_by = [](HWND speaker) { return reinterpret_cast<LPARAM>(speaker); };
    const WPARAM changed = MAKEWPARAM(7, EN_CHANGE);
    EXPECT_TRUE(reports(WM_COMMAND, changed, said_by(control), control, EN_CHANGE));
    EXPECT_FALSE(reports(WM_NOTIFY, changed, said_by(control), control, EN_CHANGE));
    EXPECT_FALSE(reports(WM_COMMAND, changed, said_by(window), control, EN_CHANGE));
    EXPECT_FALSE(reports(WM_COMMAND, changed, said_by(control), control, EN_KILLFOCUS));
    EXPECT_TRUE(reports_press(WM_COMMAND, MAKEWPARAM(7, BN_CLICKED)));
    EXPECT_FALSE(reports_press(WM_COMMAND, MAKEWPARAM(7, BN_CLICKED + 1)));
    EXPECT_FALSE(reports_press(WM_NOTIFY, MAKEWPARAM(7, BN_CLICKED)));
}

} // namespace
