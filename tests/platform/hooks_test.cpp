#include "support/boxes.h"
#include "support/recorder.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

constexpr UINT marked = WM_APP + 5;

std::vector<std::string> asked;
bool is_taken = false;

LRESULT note(const char* name, int code, WPARAM wparam, LPARAM lparam) {
    const auto& message = *reinterpret_cast<const MSG*>(lparam);
    if (code != MSGF_DIALOGBOX || message.message != marked)
        return CallNextHookEx(nullptr, code, wparam, lparam);
    asked.emplace_back(name);
    return is_taken ? TRUE : CallNextHookEx(nullptr, code, wparam, lparam);
}

LRESULT CALLBACK first(int code, WPARAM wparam, LPARAM lparam) { return note("first", code, wparam, lparam); }
LRESULT CALLBACK second(int code, WPARAM wparam, LPARAM lparam) {
    return note("second", code, wparam, lparam);
}

/// Hooks that see each message before the loop of a box handles it.
class Hooks : public RecorderTest {
protected:
    void SetUp() override {
        RecorderTest::SetUp();
        asked.clear();
        is_taken = false;
        window = open("main", WS_OVERLAPPEDWINDOW | WS_VISIBLE);
        answer(marked, [this](HWND, WPARAM, LPARAM) -> LRESULT { return ++handled; });
    }
    static HHOOK set(HOOKPROC procedure) {
        return SetWindowsHookExA(WH_MSGFILTER, procedure, nullptr, GetCurrentThreadId());
    }
    void show_box() {
        PostMessageA(window, marked, 0, 0);
        MessageBoxA(nullptr, "text", "caption", MB_OK);
    }

    Boxes boxes;
    HWND window = nullptr;
    int handled = 0;
};

TEST_F(Hooks, SeeEachMessageThatABoxHandles) {
    const HHOOK hook = set(first);
    ASSERT_NE(hook, nullptr);
    show_box();
    EXPECT_THAT(asked, ElementsAre("first"));
    EXPECT_EQ(handled, 1);
    UnhookWindowsHookEx(hook);
}

TEST_F(Hooks, MayTakeAMessage) {
    const HHOOK hook = set(first);
    is_taken = true;
    show_box();
    EXPECT_EQ(handled, 0);
    UnhookWindowsHookEx(hook);
}

TEST_F(Hooks, OfOneThreadAreAskedLatestFirst) {
    const HHOOK one = set(first);
    const HHOOK other = set(second);
    show_box();
    EXPECT_THAT(asked, ElementsAre("second", "first"));
    UnhookWindowsHookEx(other);
    UnhookWindowsHookEx(one);
}

TEST_F(Hooks, ThatAreTakenAwayAreNotAsked) {
    EXPECT_TRUE(UnhookWindowsHookEx(set(first)));
    show_box();
    EXPECT_TRUE(asked.empty());
    EXPECT_EQ(handled, 1);
}

TEST_F(Hooks, AreAskedByTheKeyboardOfADialogToo) {
    const HHOOK hook = set(first);
    is_taken = true;
    MSG message{window, marked, 0, 0, 0, {0, 0}};
    EXPECT_TRUE(IsDialogMessageA(window, &message));
    EXPECT_THAT(asked, ElementsAre("first"));
    EXPECT_EQ(handled, 0);
    UnhookWindowsHookEx(hook);
}

} // namespace
