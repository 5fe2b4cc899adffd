#include "support/recorder.h"
#include "support/user.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class WindowLife : public RecorderTest {};

TEST_F(WindowLife, CreationTellsTheWindowWhatItWasMadeFrom) {
    CREATESTRUCTA seen{};
    std::string title;
    answer(WM_CREATE, [&](HWND, WPARAM, LPARAM lparam) -> LRESULT {
        seen = *reinterpret_cast<const CREATESTRUCTA*>(lparam);
        title = seen.lpszName;
        return 0;
    });
    const HWND window = open("main", WS_POPUP);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(title, "main");
    EXPECT_EQ(seen.cx, 400);
    EXPECT_EQ(seen.cy, 300);
    EXPECT_EQ(seen.hwndParent, nullptr);
    EXPECT_EQ(seen.lpCreateParams, nullptr);
}

TEST_F(WindowLife, AnOverlappedWindowLearnsItsSizeWhenItIsFirstShown) {
    watch({WM_NCCREATE, WM_CREATE, WM_SIZE, WM_MOVE});
    const HWND window = open("main", WS_OVERLAPPEDWINDOW);
    EXPECT_THAT(take_log(), ElementsAre(" nccreate", "main create"));
    ShowWindow(window, SW_SHOWNORMAL);
    EXPECT_THAT(take_log(), ElementsAre("main size", "main move"));
    ShowWindow(window, SW_HIDE);
    ShowWindow(window, SW_SHOWNORMAL);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(WindowLife, AChildLearnsItsSizeAtOnce) {
    const HWND window = open("main", WS_OVERLAPPEDWINDOW);
    watch({WM_CREATE, WM_SIZE, WM_MOVE});
    open_child("child", window);
    EXPECT_THAT(take_log(), ElementsAre("child create", "child size", "child move"));
}

TEST_F(WindowLife, ARefusedNonClientCreationMakesNoWindow) {
    answer(WM_NCCREATE, [](HWND, WPARAM, LPARAM) -> LRESULT { return FALSE; });
    watch({WM_CREATE, WM_DESTROY});
    EXPECT_EQ(open("main", WS_OVERLAPPEDWINDOW), nullptr);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(WindowLife, ARefusedCreationDestroysTheWindowAndItsChildren) {
    HWND made = nullptr;
    HWND child = nullptr;
    answer(WM_CREATE, [&](HWND handle, WPARAM, LPARAM) -> LRESULT {
        made = handle;
        child = CreateWindowExA(0, "Button", "b", WS_CHILD, 0, 0, 1, 1, handle, nullptr, nullptr, nullptr);
        return -1;
    });
    watch({WM_DESTROY, WM_NCDESTROY});
    EXPECT_EQ(open("main", WS_OVERLAPPEDWINDOW), nullptr);
    EXPECT_THAT(take_log(), ElementsAre("main ncdestroy"));
    EXPECT_NE(made, nullptr);
    EXPECT_FALSE(IsWindow(made));
    EXPECT_FALSE(IsWindow(child));
}

TEST_F(WindowLife, AWindowMayDestroyItselfWhileItIsCreated) {
    answer(WM_CREATE, [&](HWND handle, WPARAM, LPARAM) -> LRESULT {
        DestroyWindow(handle);
        return 0;
    });
    EXPECT_EQ(open("main", WS_OVERLAPPEDWINDOW), nullptr);
}

TEST_F(WindowLife, DestructionGoesDownFirstAndUpAfterwards) {
    const HWND window = open("main", WS_OVERLAPPEDWINDOW | WS_VISIBLE);
    const HWND first = open_child("first", window);
    open_child("inner", first);
    open_child("second", window);
    watch({WM_DESTROY, WM_NCDESTROY});
    EXPECT_TRUE(DestroyWindow(window));
    EXPECT_THAT(take_log(),
                ElementsAre("main destroy", "first destroy", "inner destroy", "second destroy",
                            "inner ncdestroy", "first ncdestroy", "second ncdestroy", "main ncdestroy"));
    EXPECT_FALSE(IsWindow(window));
    EXPECT_FALSE(IsWindow(first));
}

TEST_F(WindowLife, ClosingDestroysUnlessTheWindowSaysOtherwise) {
    const HWND window = open("main", WS_OVERLAPPEDWINDOW);
    answer(WM_CLOSE, [](HWND, WPARAM, LPARAM) -> LRESULT { return 0; });
    SendMessageA(window, WM_CLOSE, 0, 0);
    EXPECT_TRUE(IsWindow(window));
    answers.clear();
    SendMessageA(window, WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsWindow(window));
}

TEST_F(WindowLife, DestructionTakesTheOwnedWindowsAlong) {
    const HWND window = open("main", WS_OVERLAPPEDWINDOW);
    const HWND owned = open("owned", WS_POPUP, window);
    EXPECT_EQ(GetWindow(owned, GW_OWNER), window);
    DestroyWindow(window);
    EXPECT_FALSE(IsWindow(owned));
}

TEST_F(WindowLife, DestructionRemovesTheQueuedMessages) {
    const HWND window = open("main", WS_OVERLAPPEDWINDOW);
    const HWND child = open_child("child", window);
    PostMessageA(child, WM_APP, 0, 0);
    DestroyWindow(child);
    MSG message{};
    EXPECT_FALSE(PeekMessageA(&message, nullptr, WM_APP, WM_APP, PM_REMOVE));
}

TEST_F(WindowLife, AStaleHandleIsRefusedEverywhere) {
    const HWND stale = open("main", WS_OVERLAPPEDWINDOW);
    DestroyWindow(stale);
    const HWND other = open("other", WS_OVERLAPPEDWINDOW);
    EXPECT_NE(stale, other);
    const auto refuses = [](auto call) {
        SetLastError(0);
        const auto result = call();
        return result == 0 && GetLastError() == ERROR_INVALID_WINDOW_HANDLE;
    };
    RECT rectangle{};
    EXPECT_FALSE(DestroyWindow(stale));
    EXPECT_TRUE(refuses([&] { return SetWindowTextA(stale, "x"); }));
    EXPECT_TRUE(refuses([&] { return PostMessageA(stale, WM_APP, 0, 0); }));
    EXPECT_TRUE(refuses([&] { return SendMessageA(stale, WM_APP, 0, 0); }));
    EXPECT_TRUE(refuses([&] { return SetWindowPos(stale, nullptr, 0, 0, 1, 1, SWP_NOZORDER); }));
    EXPECT_TRUE(refuses([&] { return GetClientRect(stale, &rectangle); }));
    EXPECT_TRUE(refuses([&] { return GetWindowRect(stale, &rectangle); }));
    EXPECT_TRUE(refuses([&] { return EnableWindow(stale, FALSE); }));
    EXPECT_TRUE(refuses([&] { return ShowWindow(stale, SW_SHOW); }));
    EXPECT_TRUE(refuses([&] { return SetFocus(stale) != nullptr; }));
    EXPECT_TRUE(refuses([&] { return GetWindowLongPtrA(stale, GWLP_USERDATA); }));
    EXPECT_TRUE(refuses([&] { return SetWindowLongPtrA(stale, GWLP_USERDATA, 1); }));
    EXPECT_TRUE(refuses([&] { return open_child("child", stale) != nullptr; }));
}

TEST_F(WindowLife, AWindowOfNoClassOrAChildWithoutParentIsRefused) {
    const auto create = [](const char* name, DWORD style) {
        return CreateWindowExA(0, name, "", style, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(create("no such class", WS_POPUP), nullptr);
    EXPECT_EQ(create("Button", WS_CHILD), nullptr);
}

TEST_F(WindowLife, AClassIsRegisteredOnceAndKeptWhileItHasWindows) {
    WNDCLASSEXA details{};
    details.cbSize = sizeof details;
    details.lpfnWndProc = DefWindowProcA;
    details.hInstance = GetModuleHandleA(nullptr);
    details.lpszClassName = "Tavrin_Life";
    EXPECT_NE(RegisterClassExA(&details), 0);
    EXPECT_EQ(RegisterClassExA(&details), 0);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_CLASS_ALREADY_EXISTS));
    const HWND window = CreateWindowExA(0, "TAVRIN_LIFE", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                                        details.hInstance, nullptr);
    EXPECT_NE(window, nullptr) << "names of classes have no case";
    EXPECT_FALSE(UnregisterClassA("Tavrin_Life", details.hInstance));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_CLASS_HAS_WINDOWS));
    DestroyWindow(window);
    EXPECT_TRUE(UnregisterClassA("Tavrin_Life", details.hInstance));
    EXPECT_FALSE(UnregisterClassA("Tavrin_Life", details.hInstance));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_CLASS_DOES_NOT_EXIST));
}

LRESULT CALLBACK answers_seven(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    return message == WM_APP ? 7 : DefWindowProcA(handle, message, wparam, lparam);
}

TEST_F(WindowLife, AClassMayComeAndGoAnyNumberOfTimes) {
    WNDCLASSEXA details{};
    details.cbSize = sizeof details;
    details.lpfnWndProc = DefWindowProcA;
    details.hInstance = GetModuleHandleA(nullptr);
    details.lpszClassName = "tavrin_passing";
    int times = 0;
    while (times < 20000 && RegisterClassExA(&details) != 0 &&
           UnregisterClassA("tavrin_passing", details.hInstance))
        ++times;
    EXPECT_EQ(times, 20000);
}

TEST_F(WindowLife, ASubclassProcedureTakesOverAndCanCallTheOneBefore) {
    answer(WM_APP, [](HWND, WPARAM, LPARAM) -> LRESULT { return 3; });
    const HWND window = open("main", WS_OVERLAPPEDWINDOW);
    const auto before = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(answers_seven)));
    EXPECT_EQ(SendMessageA(window, WM_APP, 0, 0), 7);
    EXPECT_EQ(CallWindowProcA(before, window, WM_APP, 0, 0), 3);
}

TEST_F(WindowLife, ChildrenAreListedInTheOrderOfTheirCreation) {
    const HWND window = open("main", WS_OVERLAPPEDWINDOW);
    const HWND first = open_child("first", window);
    const HWND second = open_child("second", window);
    const HWND third = open_child("third", window);
    EXPECT_EQ(GetWindow(window, GW_CHILD), first);
    EXPECT_EQ(GetWindow(first, GW_HWNDNEXT), second);
    EXPECT_EQ(GetWindow(second, GW_HWNDNEXT), third);
    EXPECT_EQ(GetWindow(third, GW_HWNDNEXT), nullptr);
    EXPECT_EQ(GetWindow(third, GW_HWNDFIRST), first);
    DestroyWindow(second);
    EXPECT_EQ(GetWindow(first, GW_HWNDNEXT), third);
    EXPECT_EQ(GetParent(third), window);
    EXPECT_EQ(GetParent(window), nullptr);
}

TEST_F(WindowLife, AControlIsFoundByItsId) {
    const HWND window = open("main", WS_OVERLAPPEDWINDOW);
    const HWND button = CreateWindowExA(0, "Button", "b", WS_CHILD, 0, 0, 1, 1, window,
                                        reinterpret_cast<HMENU>(LONG_PTR{103}), nullptr, nullptr);
    const HWND unnamed = CreateWindowExA(0, "Button", "b", WS_CHILD, 0, 0, 1, 1, window,
                                         reinterpret_cast<HMENU>(LONG_PTR{-1}), nullptr, nullptr);
    EXPECT_EQ(GetDlgItem(window, 103), button);
    EXPECT_EQ(GetDlgItem(window, 104), nullptr);
    EXPECT_EQ(GetDlgCtrlID(button), 103);
    EXPECT_EQ(GetDlgCtrlID(unnamed), -1);
    EXPECT_TRUE(IsChild(window, button));
    EXPECT_FALSE(IsChild(button, window));
}

TEST_F(WindowLife, ParentsHearOfChildrenThatComeAndGo) {
    const HWND window = open("main", WS_OVERLAPPEDWINDOW);
    watch({WM_PARENTNOTIFY});
    const HWND child = open_child("child", window);
    EXPECT_THAT(take_log(), ElementsAre("main parentnotify"));
    DestroyWindow(child);
    EXPECT_THAT(take_log(), ElementsAre("main parentnotify"));
}

} // namespace
