#include "substitute/control.h"
#include "support/test_window.h"

#include <gmock/gmock.h>

namespace {

/// Every call about windows can be made to fail, and then does nothing else.
class WindowCallFails : public TestWindow {
protected:
    /// Whether `call` gives `failure` when it is made to fail with code 77, and 77 is the last error.
    template <typename Call, typename Result> bool fails(const char* name, Call call, Result failure) {
        substitute::fail_call(name, 1, 77);
        SetLastError(0);
        return call() == static_cast<decltype(call())>(failure) && GetLastError() == 77;
    }
};

TEST_F(WindowCallFails, CreationAndDestruction) {
    const std::size_t before = substitute::open_windows();
    EXPECT_TRUE(fails(
        "CreateWindowExA", [&] { return add("Edit", 0); }, nullptr));
    EXPECT_EQ(substitute::open_windows(), before);
    EXPECT_TRUE(fails(
        "DestroyWindow", [&] { return DestroyWindow(window); }, FALSE));
    EXPECT_TRUE(IsWindow(window));
    WNDCLASSEXA details{};
    EXPECT_TRUE(fails(
        "RegisterClassExA", [&] { return RegisterClassExA(&details); }, 0));
    EXPECT_TRUE(fails(
        "UnregisterClassA", [&] { return UnregisterClassA("x", nullptr); }, FALSE));
    EXPECT_TRUE(fails(
        "GetModuleHandleA", [] { return GetModuleHandleA(nullptr); }, nullptr));
    EXPECT_TRUE(fails(
        "LoadIconA", [] { return LoadIconA(nullptr, "tavrin"); }, nullptr));
    EXPECT_TRUE(fails(
        "LoadImageA", [] { return LoadImageA(nullptr, "tavrin", IMAGE_ICON, 16, 16, 0); }, nullptr));
    EXPECT_TRUE(fails(
        "GetSystemMetrics", [] { return GetSystemMetrics(SM_CXSMICON); }, 0));
    EXPECT_TRUE(fails(
        "LoadCursorA", [] { return LoadCursorA(nullptr, IDC_ARROW); }, nullptr));
}

TEST_F(WindowCallFails, EachTimeWhenEveryCallIsMadeToFail) {
    substitute::fail_every_call("IsDialogMessageA", 77);
    MSG message{};
    for (int call = 1; call <= 3; ++call)
        EXPECT_FALSE(IsDialogMessageA(window, &message));
    EXPECT_EQ(substitute::failed_calls(), 3);
    EXPECT_EQ(GetLastError(), 77U);
}

TEST_F(WindowCallFails, TextAndData) {
    char text[8] = "kept";
    EXPECT_TRUE(fails(
        "SetWindowTextA", [&] { return SetWindowTextA(window, "x"); }, FALSE));
    EXPECT_EQ(text_of(window), "window");
    EXPECT_TRUE(fails(
        "GetWindowTextA", [&] { return GetWindowTextA(window, text, sizeof text); }, 0));
    EXPECT_STREQ(text, "") << "the buffer is emptied";
    EXPECT_TRUE(fails(
        "GetWindowTextLengthA", [&] { return GetWindowTextLengthA(window); }, 0));
    EXPECT_TRUE(fails(
        "SetWindowLongPtrA", [&] { return SetWindowLongPtrA(window, GWLP_USERDATA, 5); }, 0));
    EXPECT_TRUE(fails(
        "GetWindowLongPtrA", [&] { return GetWindowLongPtrA(window, GWL_STYLE); }, 0));
    EXPECT_TRUE(fails(
        "GetDlgItem", [&] { return GetDlgItem(window, 1); }, nullptr));
}

TEST_F(WindowCallFails, PlacementAndState) {
    RECT rectangle{1, 2, 3, 4};
    EXPECT_TRUE(fails(
        "SetWindowPos", [&] { return SetWindowPos(window, nullptr, 0, 0, 9, 9, 0); }, FALSE));
    EXPECT_TRUE(fails(
        "MoveWindow", [&] { return MoveWindow(window, 0, 0, 9, 9, FALSE); }, FALSE));
    EXPECT_TRUE(fails(
        "GetClientRect", [&] { return GetClientRect(window, &rectangle); }, FALSE));
    EXPECT_TRUE(fails(
        "GetWindowRect", [&] { return GetWindowRect(window, &rectangle); }, FALSE));
    EXPECT_EQ(rectangle.right, 3);
    EXPECT_TRUE(fails(
        "ShowWindow", [&] { return ShowWindow(window, SW_HIDE); }, FALSE));
    EXPECT_TRUE(fails(
        "UpdateWindow", [&] { return UpdateWindow(window); }, FALSE));
    EXPECT_TRUE(fails(
        "EnableWindow", [&] { return EnableWindow(window, FALSE); }, FALSE));
    EXPECT_TRUE(IsWindowVisible(window));
    EXPECT_TRUE(IsWindowEnabled(window));
    EXPECT_TRUE(fails(
        "SetFocus", [&] { return SetFocus(window); }, nullptr));
}

TEST_F(WindowCallFails, MessagesAndBoxes) {
    MSG message{};
    EXPECT_TRUE(fails(
        "PostMessageA", [&] { return PostMessageA(window, WM_APP, 0, 0); }, FALSE));
    EXPECT_TRUE(fails(
        "PostThreadMessageA", [] { return PostThreadMessageA(GetCurrentThreadId(), WM_APP, 0, 0); }, FALSE));
    EXPECT_FALSE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) << "neither was posted";
    EXPECT_TRUE(fails(
        "GetMessageA", [&] { return GetMessageA(&message, nullptr, 0, 0); }, -1));
    EXPECT_TRUE(fails(
        "PeekMessageA", [&] { return PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE); }, FALSE));
    EXPECT_TRUE(fails(
        "IsDialogMessageA", [&] { return IsDialogMessageA(window, &message); }, FALSE));
    EXPECT_TRUE(fails(
        "MessageBoxA", [&] { return MessageBoxA(window, "t", "c", MB_OK); }, 0));
    EXPECT_TRUE(substitute::shown_boxes().empty());
}

TEST_F(WindowCallFails, Drawing) {
    TEXTMETRICA metrics{};
    const RECT area{0, 0, 9, 9};
    EXPECT_TRUE(fails(
        "FillRect", [&] { return FillRect(GetDC(window), &area, nullptr); }, 0));
    EXPECT_EQ(GetPixel(nullptr, 1, 1), CLR_INVALID) << "nothing was filled";
    EXPECT_TRUE(fails(
        "GetStockObject", [] { return GetStockObject(DEFAULT_GUI_FONT); }, nullptr));
    EXPECT_TRUE(fails(
        "GetDC", [&] { return GetDC(window); }, nullptr));
    EXPECT_TRUE(fails(
        "SelectObject", [] { return SelectObject(nullptr, nullptr); }, nullptr));
    EXPECT_TRUE(fails(
        "GetTextMetricsA", [&] { return GetTextMetricsA(nullptr, &metrics); }, FALSE));
    EXPECT_TRUE(fails(
        "ReleaseDC", [&] { return ReleaseDC(window, nullptr); }, 0));
}

TEST_F(WindowCallFails, Dialogs) {
    BROWSEINFOA browse{};
    OPENFILENAMEA open{};
    char path[MAX_PATH] = "";
    EXPECT_TRUE(fails(
        "SHBrowseForFolderA", [&] { return SHBrowseForFolderA(&browse); }, nullptr));
    EXPECT_TRUE(fails(
        "SHGetPathFromIDListA", [&] { return SHGetPathFromIDListA(nullptr, path); }, FALSE));
    EXPECT_TRUE(fails(
        "GetOpenFileNameA", [&] { return GetOpenFileNameA(&open); }, FALSE));
    substitute::fail_call("CoInitialize", 1, 77);
    EXPECT_LT(CoInitialize(nullptr), 0);
}

TEST_F(WindowCallFails, WhatTheSystemDoesItselfIsNotCounted) {
    const HWND child = add("Edit", 0);
    SetFocus(child);
    substitute::fail_call("ShowWindow", 1);
    substitute::fail_call("SetFocus", 1);
    substitute::fail_call("EnableWindow", 1);
    substitute::fail_call("CreateWindowExA", 1);
    MessageBoxA(window, "text", "caption", MB_OK);
    DestroyWindow(window);
    EXPECT_EQ(substitute::failed_calls(), 0);
}

} // namespace
