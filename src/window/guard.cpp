#include "window/guard.h"

#include <utility>

namespace {
std::exception_ptr kept;
}

bool keeping() noexcept { return kept != nullptr; }

void keep_current() noexcept {
    kept = std::current_exception();
    // A message sent from another process runs inside GetMessageA, which returns to the loop only for a
    // posted one.
    PostThreadMessageA(GetCurrentThreadId(), WM_NULL, 0, 0);
}

void rethrow_kept() {
    if (kept)
        std::rethrow_exception(std::exchange(kept, nullptr));
}

void forget_kept() noexcept { kept = nullptr; }
