#include "window/guard.h"

#include <cstdlib>
#include <utility>

namespace {
std::exception_ptr kept;
}

bool keeping() noexcept { return kept != nullptr; }

void keep_current() noexcept { kept = std::current_exception(); }

void keep_and_end_waits() noexcept {
    keep_current();
    // GetMessageA, in which a message that another process sends is handled, returns to the program's loop
    // for this; and boxes and dialogs of the system's end by it, of which any number may stand.
    PostQuitMessage(EXIT_FAILURE);
}

void rethrow_kept() {
    if (kept)
        std::rethrow_exception(std::exchange(kept, nullptr));
}

void forget_kept() noexcept { kept = nullptr; }
