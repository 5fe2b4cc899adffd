#include "support/test_window.h"

#include "support/user.h"

#include <algorithm>

namespace {

constexpr const char* test_class = "tavrin_test_window";

} // namespace

void TestWindow::SetUp() {
    WNDCLASSEXA details{};
    details.cbSize = sizeof details;
    details.lpfnWndProc = procedure;
    details.hInstance = GetModuleHandleA(nullptr);
    details.lpszClassName = test_class;
    ASSERT_NE(RegisterClassExA(&details), 0);
    window = CreateWindowExA(0, test_class, "window", WS_OVERLAPPEDWINDOW, 50, 40, 500, 300, nullptr, nullptr,
                             details.hInstance, this);
    ASSERT_NE(window, nullptr);
    ShowWindow(window, SW_SHOW);
    pump_messages();
    forget();
}

void TestWindow::TearDown() {
    if (IsWindow(window))
        DestroyWindow(window);
    pump_messages();
    UnregisterClassA(test_class, GetModuleHandleA(nullptr));
}

HWND TestWindow::add(const char* class_name, DWORD style, const char* text, DWORD extended_style) {
    return add_to(window, class_name, style, text, extended_style);
}

HWND TestWindow::add_to(HWND parent, const char* class_name, DWORD style, const char* text,
                        DWORD extended_style) {
    const auto id = reinterpret_cast<HMENU>(static_cast<LONG_PTR>(next_id_));
    const HWND control =
        CreateWindowExA(extended_style, class_name, text, WS_CHILD | WS_VISIBLE | style, 10,
                        10 + 30 * next_id_, 100, 25, parent, id, GetModuleHandleA(nullptr), nullptr);
    ++next_id_;
    return control;
}

int TestWindow::count(UINT message) const {
    return static_cast<int>(std::count_if(told.begin(), told.end(),
                                          [message](const Told& each) { return each.message == message; }));
}

std::vector<int> TestWindow::commands(HWND control) const {
    std::vector<int> codes;
    for (const Told& each : told) {
        if (each.message == WM_COMMAND && each.lparam == reinterpret_cast<LPARAM>(control))
            codes.push_back(HIWORD(each.wparam));
    }
    return codes;
}

std::vector<int> TestWindow::notifications(HWND control) const {
    std::vector<int> codes;
    for (const auto& [source, code] : notified_) {
        if (source == control)
            codes.push_back(static_cast<int>(code));
    }
    return codes;
}

LRESULT CALLBACK TestWindow::procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_NCCREATE) {
        const auto& create = *reinterpret_cast<const CREATESTRUCTA*>(lparam);
        SetWindowLongPtrA(handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(create.lpCreateParams));
    }
    auto* test = reinterpret_cast<TestWindow*>(GetWindowLongPtrA(handle, GWLP_USERDATA));
    return test == nullptr ? DefWindowProcA(handle, message, wparam, lparam)
                           : test->handle(handle, message, wparam, lparam);
}

LRESULT TestWindow::handle(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    told.push_back({message, wparam, lparam});
    if (message == WM_NOTIFY) {
        const auto& header = *reinterpret_cast<const NMHDR*>(lparam);
        notified_.emplace_back(header.hwndFrom, header.code);
        return answer_notify ? answer_notify(header) : 0;
    }
    return DefWindowProcA(handle, message, wparam, lparam);
}

std::string text_of(HWND window) {
    std::string text(static_cast<std::size_t>(GetWindowTextLengthA(window)) + 1, '\0');
    text.resize(static_cast<std::size_t>(GetWindowTextA(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

RECT place_of(HWND window) {
    RECT at{};
    GetWindowRect(window, &at);
    POINT corners[2] = {{at.left, at.top}, {at.right, at.bottom}};
    MapWindowPoints(nullptr, GetParent(window), corners, 2);
    return {corners[0].x, corners[0].y, corners[1].x, corners[1].y};
}

POINT client_size_of(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    return {client.right, client.bottom};
}
