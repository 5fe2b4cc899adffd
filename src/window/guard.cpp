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
    // A message that another process sends is handled inside GetMessageA, which returns to the program's loop
    // only because of this quit message. It also ends the system's boxes and dialogs, however many are open.
    PostQuitMessage(EXIT_FAILURE);
}

void rethrow_kept() {
    if (kept)
        std::rethrow_exception(std::exchange(kept, nullptr));
}

void forget_kept() noexcept { kept = nullptr; }
