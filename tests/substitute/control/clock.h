#pragma once
/// The virtual clock, in milliseconds. It moves only when the program sleeps or waits, and when a test says
/// so.
#include <cstdint>
#include <functional>

namespace substitute {

std::uint64_t clock_now();
void advance_clock(std::uint64_t milliseconds);

/// Called after time has passed, with the new time; not called again for time that it passes itself. Only one
/// can be set.
void on_clock(std::function<void(std::uint64_t now)> hook);

} // namespace substitute
