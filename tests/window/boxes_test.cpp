#include "window/boxes.h"

#include "support/boxes.h"
#include "support/test_window.h"
#include "support/thrown.h"
#include "window/guard.h"

#include <gmock/gmock.h>

namespace {

/// As a window procedure does whose body throws.
void keep(const char* text) {
    guarded(
        0, [=]() -> LRESULT { throw std::string(text); }, [] { return LRESULT{0}; });
}

class ShownBox : public TestWindow {
protected:
    void TearDown() override {
        forget_kept();
        TestWindow::TearDown();
    }

    Boxes boxes;
};

TEST_F(ShownBox, SaysWhatItIsToldAndReturnsTheAnswer) {
    boxes.answer(IDNO);
    EXPECT_EQ(
        show_box(
            {.owner = window, .text = "Restart?", .caption = "Service", .style = MB_YESNO | MB_ICONQUESTION}),
        IDNO);
    ASSERT_EQ(boxes.seen().size(), 1U);
    const SeenBox box = boxes.seen()[0];
    EXPECT_EQ(box.owner, window);
    EXPECT_EQ(box.text, "Restart?");
    EXPECT_EQ(box.caption, "Service");
    EXPECT_EQ(box.style, MB_YESNO | MB_ICONQUESTION);
}

TEST_F(ShownBox, HasNoOwnerUnlessItIsTold) {
    show_box({.text = "text", .caption = "caption", .style = MB_OK});
    EXPECT_EQ(boxes.seen().at(0).owner, nullptr);
}

TEST_F(ShownBox, HandsOnWhatIsThrownMeanwhile) {
    boxes.while_shown([] { keep("broken"); });
    EXPECT_EQ(thrown_text([] { show_box({.text = "text", .caption = "caption", .style = MB_OK}); }),
              "broken");
    EXPECT_FALSE(keeping());
}

TEST_F(ShownBox, LeavesToItsCallerWhatWasThrownBefore) {
    keep("the reason for the box");
    EXPECT_EQ(thrown_text([] { show_box({.text = "text", .caption = "caption", .style = MB_OK}); }),
              "nothing thrown");
    EXPECT_TRUE(keeping());
}

} // namespace
