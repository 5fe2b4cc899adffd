#pragma once
/// The message queue. Internal to the substitute.
#include "substitute/windows/user_types.h"

#include <functional>

namespace substitute {

/// One input from keyboard or mouse. Which window it reaches is decided only when the program takes it from
/// the queue.
struct Input {
    UINT message;
    WPARAM wparam;
    HWND clicked;
    LPARAM where;
};

void queue_input(const Input& input);
void queue_step(std::function<void()> step);
/// Lets a test send messages as from other processes while the program is in `function`.
void deliver(const char* function);
/// Dispatches what is posted, as the system's own modal loops do, but takes no input.
void dispatch_posted();
/// The same for everything that waits, input included.
void dispatch_all();
bool queue_is_empty();
/// Whether the thread was asked to quit: then every modal loop ends at once.
bool quit_waits();

} // namespace substitute
