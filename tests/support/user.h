#pragma once
/// The simulated user. Keys and clicks wait until the program has nothing else to do, as they do when a
/// person is slower than the program, and reach whatever has the focus by then.
#include "platform/win32.h"

#include <cstddef>
#include <functional>
#include <string>

/// Presses and releases a key, with Shift held if asked.
void press_key(int virtual_key, bool with_shift = false);
/// Types the text, one key for each character; bytes above 127 are in the system's code page.
void type_text(const std::string& text);
/// Clicks the middle of a window. Nothing happens if the window is hidden or disabled by then.
void click_on(HWND window);
/// Clicks at a point of its client area.
void click_at(HWND window, POINT where);
/// Steps that run one by one while the program's own message loop waits. A program that still waits when
/// there is no step left ends the test process with a message. One list at a time.
class UserSteps {
public:
    UserSteps();
    ~UserSteps();
    UserSteps(const UserSteps&) = delete;
    UserSteps& operator=(const UserSteps&) = delete;

    void then(std::function<void()> step);
    std::size_t left() const;
};

/// Handles everything that waits in the queue, keys and clicks included, as the program's message loop does
/// (navigation keys by IsDialogMessageA of the main window, if there is one). WM_QUIT is taken out and ends
/// nothing. Runs no user steps. Throws what a window procedure kept.
void pump_messages();
