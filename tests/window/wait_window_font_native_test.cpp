#include "substitute/control.h"
#include "support/test_window.h"
#include "window/top_level.h"
#include "window/wait_window.h"

#include <gmock/gmock.h>

namespace {

class WaitWindowFont : public TestWindow {
protected:
    void SetUp() override {
        TestWindow::SetUp();
        main_window = window;
    }
    void TearDown() override {
        main_window = nullptr;
        TestWindow::TearDown();
    }
};

/// Lines of the stock GUI font are 13 pixels high here, those of the font that a context has at first 16.
TEST_F(WaitWindowFont, IsTheOneThatItsLinesAreMeasuredIn) {
    const WaitWindow wait("one line");
    EXPECT_EQ(client_size_of(GetDlgItem(FindWindowA("tavrin_service_win", nullptr), 106)).y, 13);
}

TEST_F(WaitWindowFont, IsGivenBackWithItsContext) {
    const HGDIOBJ before = SelectObject(nullptr, nullptr);
    SelectObject(nullptr, before);
    const WaitWindow wait("text");
    EXPECT_EQ(SelectObject(nullptr, before), before);
    EXPECT_GT(substitute::call_count("GetDC"), 0);
    EXPECT_EQ(substitute::call_count("ReleaseDC"), substitute::call_count("GetDC"));
}

} // namespace
