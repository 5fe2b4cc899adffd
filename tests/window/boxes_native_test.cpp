// How often the system is asked for a box.
#include "window/boxes.h"

#include "substitute/control.h"
#include "support/test_window.h"

#include <gmock/gmock.h>

namespace {

class CountedBox : public TestWindow {};

TEST_F(CountedBox, IsOpenedOnceThoughAQuitMessageWaits) {
    const StandingBoxes standing;
    PostQuitMessage(7);
    substitute::answer_next_box(IDNO);
    EXPECT_EQ(show_box({.text = "text", .caption = "caption", .style = MB_YESNO}), IDNO);
    EXPECT_EQ(substitute::call_count("MessageBoxA"), 1);
    MSG quit{};
    ASSERT_TRUE(PeekMessageA(&quit, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(quit.message, UINT{WM_QUIT});
    EXPECT_EQ(quit.wParam, WPARAM{7});
}

} // namespace
