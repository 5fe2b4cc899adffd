#include "window/message_queue.h"

#include "support/test_window.h"
#include "support/thrown.h"
#include "support/user.h"
#include "window/guard.h"

#include <gmock/gmock.h>

namespace {

/// A window that is not the navigated one: its keys become characters all the same.
class Dispatch : public TestWindow {};

TEST_F(Dispatch, AKeyOfAnotherWindowBecomesACharacter) {
    const HWND edit = add("Edit", 0);
    MSG key{};
    key.hwnd = edit;
    key.message = WM_KEYDOWN;
    key.wParam = VK_SPACE;
    dispatch_message(nullptr, key);
    MSG next{};
    ASSERT_TRUE(PeekMessageA(&next, edit, WM_CHAR, WM_CHAR, PM_REMOVE));
    EXPECT_EQ(next.wParam, static_cast<WPARAM>(' '));
    dispatch_message(nullptr, next);
    EXPECT_EQ(text_of(edit), " ");
}

/// Between the steps of a long wait.
class Pump : public TestWindow {
protected:
    ~Pump() override { forget_kept(); }
};

TEST_F(Pump, HandlesOneMessageAndOnlyWhenOneWaits) {
    pump_messages();
    forget();
    PostMessageA(window, WM_APP + 1, 0, 0);
    PostMessageA(window, WM_APP + 2, 0, 0);
    pump_one_message();
    EXPECT_EQ(count(WM_APP + 1), 1);
    EXPECT_EQ(count(WM_APP + 2), 0);
    pump_one_message();
    EXPECT_EQ(count(WM_APP + 2), 1);
    pump_one_message();
}

TEST_F(Pump, LeavesTheQuitMessageForTheProgramsLoop) {
    pump_messages();
    PostQuitMessage(5);
    for (int i = 0; i < 3; ++i)
        pump_one_message();
    MSG message{};
    ASSERT_TRUE(PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.wParam, 5U);
}

LRESULT throw_on_order(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_APP)
        throw std::string("broken");
    return DefWindowProcA(window, message, wparam, lparam);
}

TEST_F(Pump, HandsOnWhatIsThrown) {
    pump_messages();
    SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&guarded_procedure<throw_on_order>));
    PostMessageA(window, WM_APP, 0, 0);
    EXPECT_EQ(thrown_text([] { pump_one_message(); }), "broken");
}

} // namespace
