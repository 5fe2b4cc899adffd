#pragma once
/// What every function of the substitute does first: it records the call, and checks whether a test makes
/// this call fail.
#include "substitute/kernel/kernel.h"

#include <deque>

namespace substitute {

/// Notes a call of `function`. Returns 0 when the call is to do its work, or the code to fail with (already
/// set as the last error); `fitting` is the code that a real failure of this function would most likely
/// carry, or 0 for a function that cannot fail.
DWORD failing(const char* function, DWORD fitting);
/// Sets the last error and returns the value for a failed call: FALSE, 0 or null.
template <typename Result = BOOL> Result refuse(DWORD code) {
    SetLastError(code);
    return Result{};
}
/// False on threads whose calls are neither noted nor failed: those of a test's peers.
bool watched();

/// A test looks at some thousands of notes at most.
inline constexpr std::size_t most_notes = 100'000;
/// Adds a note; beyond a limit, it replaces the oldest one, because a program that runs forever must not fill
/// the memory.
template <typename Note> void note(std::deque<Note>& notes, Note made) {
    if (notes.size() == most_notes)
        notes.pop_front();
    notes.push_back(std::move(made));
}

/// Each area of the substitute registers, at namespace scope, a function that restores its state at process
/// start.
struct ResetHook {
    explicit ResetHook(void (*hook)());
};

} // namespace substitute
