#include "support/recorder.h"

#include "support/user.h"

#include <algorithm>

namespace {

constexpr const char* class_name = "tavrin_recorder";
RecorderTest* running = nullptr;

const std::map<UINT, std::string> name_pool{{WM_NCCREATE, "nccreate"},
                                            {WM_CREATE, "create"},
                                            {WM_DESTROY, "destroy"},
                                            {WM_NCDESTROY, "ncdestroy"},
                                            {WM_SIZE, "size"},
                                            {WM_MOVE, "move"},
                                            {WM_ENABLE, "enable"},
                                            {WM_CLOSE, "close"},
                                            {WM_SETFOCUS, "setfocus"},
                                            {WM_KILLFOCUS, "killfocus"},
                                            {WM_ACTIVATE, "activate"},
                                            {WM_SHOWWINDOW, "showwindow"},
                                            {WM_PARENTNOTIFY, "parentnotify"},
                                            {WM_APP, "app"},
                                            {WM_COMMAND, "command"}};

/// Its text may not be set yet, or no longer exist.
std::string name_of(HWND window) {
    char name[32] = "";
    GetWindowTextA(window, name, sizeof name);
    return name;
}

} // namespace

void RecorderTest::SetUp() {
    running = this;
    WNDCLASSEXA details{};
    details.cbSize = sizeof details;
    details.lpfnWndProc = procedure;
    details.hInstance = GetModuleHandleA(nullptr);
    details.lpszClassName = class_name;
    ASSERT_NE(RegisterClassExA(&details), 0);
}

void RecorderTest::TearDown() {
    watched_.clear();
    answers.clear();
    for (const HWND each : opened_) {
        if (IsWindow(each))
            DestroyWindow(each);
    }
    pump_messages();
    EXPECT_TRUE(UnregisterClassA(class_name, GetModuleHandleA(nullptr))) << "a window is left";
    running = nullptr;
}

HWND RecorderTest::open(const std::string& name, DWORD style, HWND parent) {
    const bool is_child = (style & WS_CHILD) != 0;
    const HWND window =
        CreateWindowExA(0, class_name, name.c_str(), style, 10, 10, is_child ? 100 : 400, is_child ? 50 : 300,
                        parent, nullptr, GetModuleHandleA(nullptr), nullptr);
    opened_.push_back(window);
    return window;
}

void RecorderTest::watch(std::vector<UINT> messages) {
    watched_ = std::move(messages);
    log_.clear();
}

std::vector<std::string> RecorderTest::take_log() { return std::exchange(log_, {}); }

LRESULT CALLBACK RecorderTest::procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    auto& watched = running->watched_;
    if (std::find(watched.begin(), watched.end(), message) != watched.end())
        running->log_.push_back(name_of(handle) + " " + name_pool.at(message));
    const auto answer = running->answers.find(message);
    return answer == running->answers.end() ? DefWindowProcA(handle, message, wparam, lparam)
                                            : answer->second(handle, wparam, lparam);
}
