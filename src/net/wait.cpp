#include "net/wait.h"

namespace net {

fd_set set_of(SOCKET handle) {
    fd_set set;
    FD_ZERO(&set);
    FD_SET(handle, &set);
    return set;
}

int wait_readable(SOCKET handle, int seconds) {
    fd_set set = set_of(handle);
    timeval limit{seconds, 0};
    return select(0, &set, nullptr, nullptr, &limit);
}

int wait_writable(SOCKET handle, int seconds) {
    fd_set set = set_of(handle);
    timeval limit{seconds, 0};
    return select(0, nullptr, &set, nullptr, &limit);
}

} // namespace net
