#pragma once
/// The scripted user: keys, clicks, steps that run while the program waits, and answers to message boxes.
#include "substitute/windows/user.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace substitute {

/// Presses and releases a key, with Shift held if asked. It reaches the window that has the focus when the
/// program takes it from the queue.
void press(int virtual_key, bool with_shift = false);
/// Types the text, one key a character.
void type(const std::string& text);
/// Clicks into the middle of a window with the mouse. Nothing happens when it is hidden or disabled by the
/// time that the program takes the click from the queue.
void click(HWND window);
/// The same at a point of its client area.
void click(HWND window, POINT where);

/// Clicks on a button of the window's frame: HTMINBUTTON or HTCLOSE.
void click_frame(HWND window, WPARAM button);
/// Whether keys or clicks wait that the program has not taken.
bool input_waits();

/// The user turns to another program: no window of this one is active, and none has the focus.
void leave_program();
/// The window that was active then is active again.
void return_to_program();

/// Adds a step that runs when GetMessageA finds its queue empty; one step is run, then the queue is looked
/// at again. GetMessageA with an empty queue and no step left ends the process with a message.
void then(std::function<void()> step);
std::size_t steps_left();
void forget_steps();
/// Runs once, when the program next calls PeekMessageA.
void when_peeked(std::function<void()> step);

/// Runs wherever the system may deliver messages of other processes to the program: when the program looks at
/// its queue or waits for a message, while a box or a dialog is shown, and when focus or activity move with a
/// window. Empty: nothing runs.
void on_delivery(std::function<void(const char* function)> step);

struct ShownBox {
    std::string text;
    std::string caption;
    UINT style = 0;
    HWND owner = nullptr;
};

/// The next message box without an answer yet is answered with `answer` (IDYES, ...). One without a scripted
/// answer gets its first button, as if the user pressed Enter. While a quit message waits, a box closes at
/// once and uses up neither an answer nor a step.
void answer_next_box(int answer);
/// Runs while the next message box without such a step yet is shown, before it is answered.
void while_next_box(std::function<void()> step);
const std::vector<ShownBox>& shown_boxes();
/// How many scripted answers no box has taken.
std::size_t answers_left();
/// Drops scripted answers and steps that no box has taken.
void forget_answers();

/// The text that the system would show when the user ends the session; empty if `window` does not object.
std::wstring shutdown_block_reason(HWND window);
/// Hooks that are set.
int open_hooks();

/// Windows that exist, children included.
std::size_t open_windows();

} // namespace substitute
