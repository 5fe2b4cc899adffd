#include "window/main_handle.h"

#include "support/test_window.h"

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

} // namespace
