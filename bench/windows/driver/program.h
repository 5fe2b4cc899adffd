#pragma once
/// A program with a window, timed from outside.
#include "platform/win32.h"

#include <string>

namespace bench {

/// Seconds on a clock that only runs forward.
double now();

class Program {
public:
    /// Starts the program and returns when its window is painted and it waits for the user.
    explicit Program(const std::string& command_line);
    /// Closes the window and waits for the end.
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// How long the start took, in seconds.
    double start_time() const { return start_time_; }
    HWND window() const { return window_; }
    HWND control(int id) const { return GetDlgItem(window_, id); }
    HANDLE process() const { return process_.hProcess; }
    /// Clicks on a button and waits for the program's end; returns how long that took, in seconds.
    double click_and_end(int id);
    /// Clicks on a button and waits for the message box with this caption, which is then closed; returns how
    /// long the box took to come, in seconds. Throws std::runtime_error with the text of another box.
    double click_for_box(int id, const char* caption);

private:
    HWND find_window() const;

    PROCESS_INFORMATION process_{};
    HWND window_ = nullptr;
    double start_time_ = 0;
};

} // namespace bench
