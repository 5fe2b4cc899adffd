#pragma once
/// Waits on one socket.
#include "platform/win32.h"

namespace net {

/// The set that holds `handle` alone.
fd_set set_of(SOCKET handle);
/// `select` for reading with a limit in whole seconds; its result: 1 ready, 0 time over, -1 failed.
int wait_readable(SOCKET handle, int seconds);
/// The same for writing.
int wait_writable(SOCKET handle, int seconds);

} // namespace net
