#pragma once
/// The thread's message queue: taking, dropping and dispatching messages.
#include "platform/win32.h"

#include <optional>

/// Removes quit messages from the thread's queue while it exists, and puts the last one back when it is
/// destroyed. A waiting quit message would end every box at once, precede paint and input messages, and be
/// fetched with any filter.
class QuitAside {
public:
    QuitAside() = default;
    QuitAside(const QuitAside&) = delete;
    QuitAside& operator=(const QuitAside&) = delete;
    ~QuitAside();

    /// Takes a message as PeekMessageA does with PM_REMOVE, but never a quit message.
    bool take(MSG& message, HWND window, UINT first, UINT last);
    /// Takes a quit message; false when none waits.
    bool take_quit();

private:
    std::optional<int> code_;
};

/// Drops the mouse and keyboard messages in the queue for `window`, its frame and its children, and no
/// others. Does nothing if `window` is null.
void drop_input(HWND window);

/// Hands a retrieved message on as a dialog would: keyboard navigation of the window `navigated` first, then
/// to the window that the message is for.
void dispatch_message(HWND navigated, MSG& message);

/// Handles one message, if one is waiting: between the steps of a long wait, it keeps the windows painted. A
/// quit message stays for the program's own loop, and keeps no other message waiting. Throws what a procedure
/// had to keep.
void pump_one_message();
