#include "substitute/control/clock.h"
#include "substitute/calls.h"
#include "substitute/kernel/kernel.h"

#include <utility>

namespace substitute {
namespace {

struct Clock {
    std::uint64_t now = 1'000'000; // a machine that has been up for a while
    std::function<void(std::uint64_t)> hook;
    bool in_hook = false;
};

Clock& state() {
    static Clock instance;
    return instance;
}

const ResetHook reset_hook([] { state() = Clock{}; });

} // namespace

std::uint64_t clock_now() { return state().now; }

void advance_clock(std::uint64_t milliseconds) {
    state().now += milliseconds;
    if (!state().hook || state().in_hook)
        return;
    const auto hook = state().hook; // it may set another one
    state().in_hook = true;
    hook(state().now);
    state().in_hook = false;
}

void on_clock(std::function<void(std::uint64_t)> hook) { state().hook = std::move(hook); }

} // namespace substitute

void Sleep(DWORD milliseconds) {
    substitute::failing("Sleep", 0); // only counted: it cannot fail
    substitute::advance_clock(milliseconds);
}

std::uint64_t GetTickCount64() {
    substitute::failing("GetTickCount64", 0);
    return substitute::clock_now();
}
