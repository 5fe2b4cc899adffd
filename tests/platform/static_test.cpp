#include "support/test_window.h"

#include <gmock/gmock.h>

namespace {

class Static : public TestWindow {};

TEST_F(Static, KeepsItsTextAndFont) {
    const HWND text = add("Static", SS_LEFT, "help\r\ntext");
    EXPECT_EQ(text_of(text), "help\r\ntext");
    SetWindowTextA(text, "");
    EXPECT_EQ(text_of(text), "");
    const auto font = reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT));
    ASSERT_NE(font, 0U);
    SendMessageA(text, WM_SETFONT, font, FALSE);
    EXPECT_EQ(SendMessageA(text, WM_GETFONT, 0, 0), static_cast<LRESULT>(font));
}

TEST_F(Static, ReportsNothingByItself) {
    const HWND text = add("Static", SS_LEFT, "help");
    forget();
    SetWindowTextA(text, "more");
    SendMessageA(text, WM_LBUTTONDOWN, 0, 0);
    SendMessageA(text, WM_LBUTTONUP, 0, 0);
    EXPECT_EQ(count(WM_COMMAND), 0);
    EXPECT_EQ(count(WM_NOTIFY), 0);
}

TEST_F(Static, TheClassOfAWindowHasTheNameItWasRegisteredWith) {
    char name[32] = "";
    EXPECT_EQ(GetClassNameA(add("static", 0), name, sizeof name), 6);
    EXPECT_STREQ(name, "Static");
    GetClassNameA(add("EDIT", 0), name, sizeof name);
    EXPECT_STREQ(name, "Edit");
    GetClassNameA(add("sysTreeView32", 0), name, 4);
    EXPECT_STREQ(name, "Sys");
}

TEST_F(Static, AFontHasALineHeight) {
    const HDC context = GetDC(window);
    ASSERT_NE(context, nullptr);
    const HGDIOBJ before = SelectObject(context, GetStockObject(DEFAULT_GUI_FONT));
    TEXTMETRICA metrics{};
    EXPECT_TRUE(GetTextMetricsA(context, &metrics));
    EXPECT_GT(metrics.tmHeight, 5);
    EXPECT_LT(metrics.tmHeight, 40);
    EXPECT_GE(metrics.tmExternalLeading, 0);
    SelectObject(context, before);
    EXPECT_EQ(ReleaseDC(window, context), 1);
}

TEST_F(Static, AContextHasAnotherFontAtFirst) {
    const HDC context = GetDC(window);
    TEXTMETRICA at_first{};
    TEXTMETRICA chosen{};
    EXPECT_TRUE(GetTextMetricsA(context, &at_first));
    const HGDIOBJ before = SelectObject(context, GetStockObject(DEFAULT_GUI_FONT));
    EXPECT_TRUE(GetTextMetricsA(context, &chosen));
    EXPECT_NE(at_first.tmHeight, chosen.tmHeight);
    SelectObject(context, before);
    ReleaseDC(window, context);
}

} // namespace
