#include "support/recorder.h"
#include "support/user.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class Messages : public RecorderTest {
protected:
    HWND window = nullptr;

    void SetUp() override {
        RecorderTest::SetUp();
        window = open("main", WS_OVERLAPPEDWINDOW | WS_VISIBLE);
        pump_messages();
    }
    /// Removes the next message and returns it; 0 if there is none.
    static UINT take(UINT first = 0, UINT last = 0) {
        MSG message{};
        return PeekMessageA(&message, nullptr, first, last, PM_REMOVE) ? message.message : 0;
    }
};

TEST_F(Messages, PostedMessagesComeInOrderAndLater) {
    std::vector<WPARAM> seen;
    answer(WM_APP, [&](HWND, WPARAM wparam, LPARAM) -> LRESULT {
        seen.push_back(wparam);
        return 0;
    });
    PostMessageA(window, WM_APP, 1, 0);
    PostMessageA(window, WM_APP, 2, 0);
    EXPECT_TRUE(seen.empty());
    SendMessageA(window, WM_APP, 3, 0);
    pump_messages();
    EXPECT_THAT(seen, ElementsAre(3, 1, 2));
}

TEST_F(Messages, ALookLeavesTheMessageInTheQueue) {
    PostMessageA(window, WM_APP, 0, 0);
    MSG message{};
    EXPECT_TRUE(PeekMessageA(&message, window, WM_APP, WM_APP, PM_NOREMOVE));
    EXPECT_TRUE(PeekMessageA(&message, window, WM_APP, WM_APP, PM_REMOVE));
    EXPECT_EQ(message.hwnd, window);
    EXPECT_FALSE(PeekMessageA(&message, window, WM_APP, WM_APP, PM_REMOVE));
}

TEST_F(Messages, NumbersAndWindowsCanBeSingledOut) {
    const HWND child = open_child("child", window);
    PostMessageA(window, WM_APP, 0, 0);
    PostMessageA(child, WM_APP + 1, 0, 0);
    EXPECT_EQ(take(WM_APP + 1, WM_APP + 1), static_cast<UINT>(WM_APP + 1));
    PostMessageA(child, WM_APP + 1, 0, 0);
    MSG message{};
    EXPECT_TRUE(PeekMessageA(&message, child, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.hwnd, child);
    EXPECT_EQ(take(WM_APP, WM_APP), static_cast<UINT>(WM_APP));
}

TEST_F(Messages, QuitComesBehindWhatIsPostedAndCarriesItsCode) {
    PostQuitMessage(3);
    PostMessageA(window, WM_APP, 0, 0);
    MSG message{};
    EXPECT_GT(GetMessageA(&message, nullptr, WM_APP, WM_APP), 0);
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 3U);
    EXPECT_EQ(take(WM_QUIT, WM_QUIT), 0U) << "quit is taken once";
}

TEST_F(Messages, NoFilterKeepsQuitOut) {
    PostQuitMessage(3);
    MSG message{};
    ASSERT_TRUE(PeekMessageA(&message, window, WM_CLOSE, WM_CLOSE, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 3U);
    EXPECT_EQ(take(WM_QUIT, WM_QUIT), 0U);
}

TEST_F(Messages, QuitThatIsPostedToTheThreadIsLikeItsOwn) {
    PostThreadMessageA(GetCurrentThreadId(), WM_QUIT, 3, 0);
    PostMessageA(window, WM_APP, 0, 0);
    MSG message{};
    EXPECT_GT(GetMessageA(&message, nullptr, WM_APP, WM_APP), 0);
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.wParam, 3U);
}

TEST_F(Messages, AMessageToTheThreadHasNoWindow) {
    EXPECT_TRUE(PostThreadMessageA(GetCurrentThreadId(), WM_APP, 5, 6));
    MSG message{};
    ASSERT_GT(GetMessageA(&message, nullptr, WM_APP, WM_APP), 0);
    EXPECT_EQ(message.hwnd, nullptr);
    EXPECT_EQ(message.wParam, 5U);
    EXPECT_EQ(DispatchMessageA(&message), 0);
}

TEST_F(Messages, AnUnknownThreadGetsNone) {
    EXPECT_FALSE(PostThreadMessageA(GetCurrentThreadId() + 0x100001, WM_APP, 0, 0));
}

TEST_F(Messages, OnlyKeysThatMakeACharacterAreTranslated) {
    SetFocus(window);
    std::vector<WPARAM> characters;
    answer(WM_CHAR, [&](HWND, WPARAM wparam, LPARAM) -> LRESULT {
        characters.push_back(wparam);
        return 0;
    });
    press_key(VK_RIGHT);
    press_key(VK_SPACE);
    press_key(VK_RETURN);
    press_key(VK_TAB);
    press_key(VK_ESCAPE);
    press_key(VK_BACK);
    type_text("a\xFC");
    pump_messages();
    EXPECT_THAT(characters, ElementsAre(' ', '\r', '\t', 0x1B, '\b', 'a', 0xFC));
}

TEST_F(Messages, ShiftIsDownWhileItIsHeld) {
    SetFocus(window);
    std::vector<std::pair<WPARAM, bool>> keys;
    answer(WM_KEYDOWN, [&](HWND, WPARAM wparam, LPARAM) -> LRESULT {
        keys.emplace_back(wparam, GetKeyState(VK_SHIFT) < 0);
        return 0;
    });
    press_key(VK_RIGHT, true);
    press_key(VK_LEFT);
    pump_messages();
    std::erase_if(keys, [](const auto& each) { return each.first == VK_SHIFT; });
    EXPECT_THAT(
        keys, ElementsAre(std::pair<WPARAM, bool>(VK_RIGHT, true), std::pair<WPARAM, bool>(VK_LEFT, false)));
}

TEST_F(Messages, ASessionMayEndUnlessAWindowSaysOtherwise) {
    EXPECT_EQ(SendMessageA(window, WM_QUERYENDSESSION, 0, 0), 1);
    answer(WM_QUERYENDSESSION, [](HWND, WPARAM, LPARAM) -> LRESULT { return 0; });
    EXPECT_EQ(SendMessageA(window, WM_QUERYENDSESSION, 0, 0), 0);
}

TEST_F(Messages, UserStepsRunWhileTheLoopWaits) {
    UserSteps steps;
    std::vector<int> order;
    answer(WM_APP, [&](HWND, WPARAM wparam, LPARAM) -> LRESULT {
        order.push_back(static_cast<int>(wparam));
        return 0;
    });
    steps.then([&] {
        order.push_back(1);
        PostMessageA(window, WM_APP, 2, 0);
    });
    steps.then([&] {
        order.push_back(3);
        PostQuitMessage(0);
    });
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0) > 0)
        DispatchMessageA(&message);
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
    EXPECT_EQ(steps.left(), 0U);
}

TEST_F(Messages, WhatAStepTypesIsHandledBeforeTheNextStep) {
    const HWND edit = CreateWindowExA(0, "Edit", "", WS_CHILD | WS_VISIBLE, 0, 0, 90, 20, window, nullptr,
                                      nullptr, nullptr);
    UserSteps steps;
    std::string seen;
    steps.then([&] {
        SetFocus(edit);
        type_text("typed");
    });
    steps.then([&] {
        char text[16] = "";
        GetWindowTextA(edit, text, sizeof text);
        seen = text;
        PostQuitMessage(0);
    });
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    EXPECT_EQ(seen, "typed");
}

} // namespace
