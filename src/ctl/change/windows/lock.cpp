#include "ctl/change/lock.h"

#include "ctl/failure.h"
#include "platform/win32.h"

namespace ctl {
namespace {

constexpr const char* name = "Global\\tavrinctl";

/// One that another user has made may be waited for, and no more.
HANDLE open_turn() {
    const HANDLE own = CreateMutexA(nullptr, FALSE, name);
    return own != nullptr ? own : OpenMutexA(SYNCHRONIZE, FALSE, name);
}

} // namespace

OneAtATime::OneAtATime(int timeout_seconds) : turn_(open_turn()) {
    const DWORD limit = static_cast<DWORD>(timeout_seconds) * 1000;
    if (turn_ == nullptr || WaitForSingleObject(turn_, limit) == WAIT_TIMEOUT)
        throw Failure{failed, "another tavrinctl is changing values and does not end; nothing was written"};
}

OneAtATime::~OneAtATime() {
    ReleaseMutex(turn_);
    CloseHandle(turn_);
}

} // namespace ctl
