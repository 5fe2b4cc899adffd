// Messages that the pump between the steps of a long wait leaves in the queue.
#include "substitute/control.h"
#include "support/test_window.h"
#include "support/thrown.h"
#include "support/user.h"
#include "window/guard.h"
#include "window/message_queue.h"

#include <gmock/gmock.h>

namespace {

class NativePump : public TestWindow {
protected:
    void SetUp() override {
        TestWindow::SetUp();
        pump_messages();
    }
    ~NativePump() override { forget_kept(); }
};

TEST_F(NativePump, HandsNothingOnWhenNothingWaits) {
    const int before = substitute::call_count("DispatchMessageA");
    pump_one_message();
    EXPECT_EQ(substitute::call_count("DispatchMessageA"), before);
}

/// A message that another program sends is handled while the queue is checked, and is not taken from it.
TEST_F(NativePump, HandsOnAtOnceWhatIsThrownWhileItLooks) {
    substitute::when_peeked([] {
        guarded(
            0, []() -> LRESULT { throw std::string("broken"); }, [] { return LRESULT{0}; });
        MSG wake_up{};
        PeekMessageA(&wake_up, nullptr, WM_NULL, WM_NULL, PM_REMOVE);
    });
    EXPECT_EQ(thrown_text([] { pump_one_message(); }), "broken");
}

} // namespace
