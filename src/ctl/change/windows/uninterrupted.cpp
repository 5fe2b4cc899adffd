#include "ctl/change/uninterrupted.h"

#include "platform/win32.h"

#include <atomic>

namespace ctl {
namespace {

// The system calls the handler on a thread of its own.
std::atomic<bool> end_requested = false;
HANDLE finished = nullptr;

/// After a Ctrl+C the program goes on when this returns; in all other cases the system ends it then, or after
/// some seconds.
BOOL WINAPI note_request(DWORD kind) {
    end_requested = true;
    if (kind != CTRL_C_EVENT && kind != CTRL_BREAK_EVENT)
        WaitForSingleObject(finished, INFINITE);
    return TRUE;
}

} // namespace

Uninterrupted::Uninterrupted() {
    finished = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    SetConsoleCtrlHandler(note_request, TRUE);
}

/// The event stays open: a handler may still wait for it.
Uninterrupted::~Uninterrupted() {
    SetEvent(finished);
    SetConsoleCtrlHandler(note_request, FALSE);
}

bool Uninterrupted::is_over() const { return end_requested; }

} // namespace ctl
