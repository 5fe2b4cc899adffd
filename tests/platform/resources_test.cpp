/// What the program relies on in classes, icons, cursors and painting, wherever they come from.
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

TEST_F(Resources, AWindowMayBePaintedAtOnce) { EXPECT_TRUE(UpdateWindow(window)); }

TEST(Clock, SleepLetsItRun) {
    const auto before = GetTickCount64();
    Sleep(100);
    // The clock ticks 64 times a second.
    EXPECT_GE(GetTickCount64() - before, 84U);
}

} // namespace
