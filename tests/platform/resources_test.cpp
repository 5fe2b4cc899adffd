/// The behaviour of classes, icons, cursors and painting on which the program relies, on every platform.
#include "support/test_window.h"

#include <gmock/gmock.h>

namespace {

class Resources : public TestWindow {};

TEST_F(Resources, AClassTellsWhatItIsMadeOf) {
    WNDCLASSEXA details{};
    details.cbSize = sizeof details;
    ASSERT_TRUE(GetClassInfoExA(nullptr, "EDIT", &details));
    EXPECT_STREQ(details.lpszClassName, "EDIT");
    EXPECT_NE(details.lpfnWndProc, nullptr);
}

TEST_F(Resources, AnUnknownClassIsNotFound) {
    WNDCLASSEXA details{};
    details.cbSize = sizeof details;
    SetLastError(0);
    EXPECT_FALSE(GetClassInfoExA(nullptr, "tavrin_no_such_class", &details));
    EXPECT_EQ(GetLastError(), 1411U);
}

TEST_F(Resources, TheSystemHasAnArrowForItsCursor) { EXPECT_NE(LoadCursorA(nullptr, IDC_ARROW), nullptr); }

TEST_F(Resources, ASmallIconHas16Pixels) {
    EXPECT_EQ(GetSystemMetrics(SM_CXSMICON), 16);
    EXPECT_EQ(GetSystemMetrics(SM_CYSMICON), 16);
}

TEST_F(Resources, ARectangleIsFilledWithAColourOfTheSystems) {
    const HDC context = GetDC(window);
    const RECT all{0, 0, 20, 20};
    const RECT part{5, 5, 10, 10};
    EXPECT_TRUE(FillRect(context, &all, reinterpret_cast<HBRUSH>(INT_PTR{COLOR_HIGHLIGHT + 1})));
    EXPECT_TRUE(FillRect(context, &part, reinterpret_cast<HBRUSH>(INT_PTR{COLOR_BTNFACE + 1})));
    EXPECT_EQ(GetPixel(context, 4, 5), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(GetPixel(context, 5, 5), GetSysColor(COLOR_BTNFACE));
    EXPECT_EQ(GetPixel(context, 9, 9), GetSysColor(COLOR_BTNFACE));
    EXPECT_EQ(GetPixel(context, 10, 9), GetSysColor(COLOR_HIGHLIGHT));
    ReleaseDC(window, context);
}

TEST_F(Resources, ACursorThatTheSystemDoesNotHaveIsNotFound) {
    EXPECT_EQ(LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(ULONG_PTR{999})), nullptr);
    EXPECT_EQ(LoadCursorA(GetModuleHandleA(nullptr), IDC_ARROW), nullptr);
}

TEST_F(Resources, AWindowMayBePaintedAtOnce) { EXPECT_TRUE(UpdateWindow(window)); }

TEST(Clock, SleepLetsItRun) {
    const auto before = GetTickCount64();
    Sleep(100);
    // The clock ticks 64 times a second.
    EXPECT_GE(GetTickCount64() - before, 84U);
}

} // namespace
