#include "driver/program.h"

#include "e2e/wait.h"
#include "e2e/window.h"

namespace bench {
namespace {

constexpr DWORD patience = 120'000; // milliseconds
constexpr char error_caption[] = "Error testing connection";

[[noreturn]] void fail(const std::string& what) { throw std::runtime_error(what); }

} // namespace

double now() {
    LARGE_INTEGER count{};
    LARGE_INTEGER frequency{};
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart);
}

Program::Program(const std::string& command_line) {
    std::string line = command_line;
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    const double begin = now();
    if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process_))
        fail("cannot start " + command_line);
    // A program that waits for input has painted everything.
    WaitForInputIdle(process_.hProcess, patience);
    e2e::wait_for(
        "the window of " + command_line, [&] { return (window_ = find_window()) != nullptr; }, 120);
    start_time_ = now() - begin;
    e2e::wait_for("the painting of " + command_line, [&] { return e2e::is_painted(window_); });
}

Program::~Program() {
    if (WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT) {
        PostMessageA(window_, WM_CLOSE, 0, 0);
        if (WaitForSingleObject(process_.hProcess, patience) != WAIT_OBJECT_0)
            TerminateProcess(process_.hProcess, 99);
    }
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
}

HWND Program::find_window() const {
    const auto windows = e2e::windows_of(process_.dwProcessId);
    return windows.empty() ? nullptr : windows.front();
}

double Program::click_and_end(int id) {
    const double begin = now();
    PostMessageA(control(id), BM_CLICK, 0, 0);
    if (WaitForSingleObject(process_.hProcess, patience) != WAIT_OBJECT_0)
        fail("a program does not end");
    return now() - begin;
}

double Program::click_for_box(int id, const char* caption) {
    const double begin = now();
    PostMessageA(control(id), BM_CLICK, 0, 0);
    HWND box = nullptr;
    while ((box = FindWindowA("#32770", caption)) == nullptr) {
        if (const HWND error = FindWindowA("#32770", error_caption))
            fail(e2e::text_of(GetDlgItem(error, 0xFFFF)));
        if (now() - begin > patience / 1000.0)
            fail(std::string("no box ") + caption);
        Sleep(1);
    }
    const double taken = now() - begin;
    PostMessageA(box, WM_COMMAND, IDOK, 0);
    e2e::wait_for("the end of a box", [&] { return !IsWindow(box); });
    return taken;
}

} // namespace bench
