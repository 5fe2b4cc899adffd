#pragma once
/// Carries an exception across the system's frames. No exception may leave a window procedure, because
/// versions of Windows differ in what they do with it (some swallow it). So a procedure runs its body behind
/// `guarded`, and the code that called the system calls `rethrow_kept` right after the call.
#include "platform/win32.h"

#include <exception>

/// True while an exception is kept; procedures then only do the default.
bool keeping() noexcept;
/// Keeps the exception being handled.
void keep_current() noexcept;
/// Keeps it and ends every wait in the system, in the message loop or in a box, because a kept exception must
/// end the program at once.
void keep_and_end_waits() noexcept;
/// Throws the kept exception, if there is one; afterwards none is kept.
void rethrow_kept();
/// Drops the kept exception, if there is one.
void forget_kept() noexcept;

/// Runs `body`; an exception that leaves it is kept and `failure` returned. While one is kept, runs
/// `fallback`.
template <typename Body, typename Fallback>
LRESULT guarded(LRESULT failure, Body body, Fallback fallback) noexcept {
    if (keeping())
        return fallback();
    try {
        return body();
    } catch (...) {
        keep_and_end_waits();
        return failure;
    }
}

/// The window procedure whose body is `Handle`. Creation fails when that throws.
template <LRESULT (*Handle)(HWND, UINT, WPARAM, LPARAM)>
LRESULT CALLBACK guarded_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
    return guarded(
        message == WM_CREATE ? -1 : 0, [&] { return Handle(window, message, wparam, lparam); },
        [&] { return DefWindowProcA(window, message, wparam, lparam); });
}
