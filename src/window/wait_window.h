#pragma once
#include "platform/win32.h"

#include <string>

/// A small window, centred over the main window and painted at once, with a text about a long step.
class WaitWindow {
public:
    /// If the window cannot be shown, the user gets a message, and the step continues without it.
    explicit WaitWindow(const std::string& text);
    WaitWindow(const WaitWindow&) = delete;
    WaitWindow& operator=(const WaitWindow&) = delete;
    /// Closes the window unless that was done before. Leaves an exception that is thrown meanwhile to the
    /// next `rethrow_kept`.
    ~WaitWindow();

    /// Drops the keys and clicks that have arrived meanwhile: they were not meant for the next window.
    void drop_waiting_input() const;
    /// Closes the window, drops that input, and handles no other message meanwhile. While the main window is
    /// disabled, only posts a request to close, which is handled with the next messages. Throws what a window
    /// procedure had to keep.
    void close();

private:
    /// Null when the window could not be shown or was closed.
    HWND window_;
};

/// The top of a block of `lines` lines, each `line_height` pixels high, that is centred between `client_top`
/// and `client_height`. Negative if the text is taller than its window.
int centred_text_top(int client_top, int client_height, int lines, int line_height);
