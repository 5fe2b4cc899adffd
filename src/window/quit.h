#pragma once
#include "platform/win32.h"

#include <optional>

/// Keeps quit messages out of the thread's queue while it lives, and puts the last one back at its end. One
/// that waits there ends every box at once and comes before paint and input, and no filter keeps it out of
/// what is fetched.
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
