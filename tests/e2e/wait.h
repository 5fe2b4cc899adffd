#pragma once
/// Waiting for what another process does: a condition is asked until it holds, never a time slept through.
#include "platform/win32.h"

#include <stdexcept>
#include <string>

namespace e2e {

/// Seconds after which something that was waited for counts as missing.
constexpr int limit = 100;

/// Hands this process's own windows what waits for them: Wine lets a program that takes the focus wait until
/// the window that loses it has answered.
inline void serve_own_windows() {
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageA(&message);
}

/// Waits until `condition` holds; throws std::runtime_error that names `what` when it does not in time.
template <typename Condition>
void wait_for(const std::string& what, Condition condition, int seconds = limit) {
    const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(seconds) * 1000;
    while (!condition()) {
        if (GetTickCount64() > end)
            throw std::runtime_error("waited " + std::to_string(seconds) + " seconds for " + what);
        serve_own_windows();
        Sleep(10);
    }
}

} // namespace e2e
