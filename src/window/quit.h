#pragma once
#include "platform/win32.h"

#include <optional>

/// Removes quit messages from the thread's queue while it exists, and puts the last one back at the end. A
/// waiting quit message ends every box at once, comes before paint and input, and is fetched whatever the
/// filter.
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
