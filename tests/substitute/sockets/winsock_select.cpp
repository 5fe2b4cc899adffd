#include <poll.h>

#include "substitute/calls.h"
#include "substitute/control/clock.h"
#include "substitute/kernel/kernel.h"
#include "substitute/sockets/winsock_calls.h"
#include "substitute/sockets/winsock_script.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <limits>
#include <vector>

namespace winsock {
namespace {

/// One entry for each socket, in whichever sets it is.
struct Polled {
    std::vector<pollfd> entries;

    void ask(const socket_set* set, short events) {
        for (UINT i = 0; set != nullptr && i < set->fd_count; ++i)
            entry(set->fd_array[i]).events = static_cast<short>(entry(set->fd_array[i]).events | events);
    }
    pollfd& entry(SOCKET handle) {
        const int descriptor = static_cast<int>(handle);
        for (pollfd& each : entries) {
            if (each.fd == descriptor)
                return each;
        }
        return entries.emplace_back(pollfd{descriptor, 0, 0});
    }
};

/// Leaves in `set` the sockets that `ready` names; returns how many.
template <typename Ready> int keep_ready(socket_set* set, Polled& polled, Ready ready) {
    if (set == nullptr)
        return 0;
    UINT kept = 0;
    for (UINT i = 0; i < set->fd_count; ++i) {
        if (ready(set->fd_array[i], polled.entry(set->fd_array[i]).revents))
            set->fd_array[kept++] = set->fd_array[i];
    }
    set->fd_count = kept;
    return static_cast<int>(kept);
}

/// A wait for the network takes its time on the substitute's clock too. It takes a millisecond at least, so
/// that time passes for a program that waits repeatedly.
class TimedWait {
public:
    ~TimedWait() {
        const auto waited = std::chrono::ceil<std::chrono::milliseconds>(std::max(passed(), least_));
        if (substitute::watched())
            substitute::advance_clock(static_cast<std::uint64_t>(std::max<std::int64_t>(waited.count(), 1)));
    }
    std::chrono::steady_clock::duration passed() const { return std::chrono::steady_clock::now() - start_; }
    /// Counts at least this long, even if the wait ends sooner.
    void takes(std::chrono::steady_clock::duration least) { least_ = least; }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::chrono::steady_clock::duration least_{};
};

/// poll() for as long as `timeout` says; a signal does not shorten the wait, as Winsock knows none.
int poll_for(std::vector<pollfd>& entries, const timeval* timeout) {
    using namespace std::chrono;
    const auto wait =
        timeout == nullptr ? microseconds::max() : seconds(timeout->tv_sec) + microseconds(timeout->tv_usec);
    TimedWait timed;
    if (timeout != nullptr && peers_are_silent()) {
        const int ready = ::poll(entries.data(), entries.size(), 0);
        if (ready == 0)
            timed.takes(wait);
        return ready;
    }
    for (;;) {
        int rest = -1;
        if (timeout != nullptr) {
            const auto left = ceil<milliseconds>(wait - timed.passed()).count();
            rest = static_cast<int>(std::clamp<long long>(left, 0, std::numeric_limits<int>::max()));
        }
        const int result = ::poll(entries.data(), entries.size(), rest);
        if (result >= 0 || errno != EINTR)
            return result;
    }
}

void clear(socket_set* set) {
    if (set != nullptr)
        set->fd_count = 0;
}

std::optional<int> scripted_select(socket_set* read, socket_set* write, socket_set* except) {
    const auto excepted = scripted_result(exception_in_select);
    const auto result = scripted_result("select");
    if (!excepted && !result)
        return std::nullopt;
    clear(read);
    clear(write);
    if (!excepted)
        clear(except);
    return excepted ? excepted : result;
}

} // namespace

void add_to_set(SOCKET handle, socket_set* set) {
    if (!is_in_set(handle, set) && set->fd_count < std::size(set->fd_array))
        set->fd_array[set->fd_count++] = handle;
}

bool is_in_set(SOCKET handle, const socket_set* set) {
    const SOCKET* end = set->fd_array + set->fd_count;
    return std::find(set->fd_array, end, handle) != end;
}

int select(int /*ignored*/, socket_set* read, socket_set* write, socket_set* except, const timeval* timeout) {
    if (substitute::failing("select", WSAENETDOWN))
        return SOCKET_ERROR;
    note_select_wait(timeout == nullptr ? -1 : static_cast<int>(timeout->tv_sec));
    if (const auto result = scripted_select(read, write, except))
        return *result;
    Polled polled;
    polled.ask(read, POLLIN);
    polled.ask(write, POLLOUT);
    polled.ask(except, POLLPRI);
    if (poll_for(polled.entries, timeout) < 0)
        return fail_with(code_of_errno(errno));
    for (const pollfd& each : polled.entries) {
        if (each.revents & POLLNVAL)
            return fail_with(WSAENOTSOCK);
    }
    // A failed connect is reported only as an exception; the host reports it as writable, too. If exceptions
    // were not requested, a broken socket is writable, and the next send returns the reason.
    const auto excepted = [except](SOCKET handle) { return except != nullptr && is_in_set(handle, except); };
    const int writable = keep_ready(write, polled, [&excepted](SOCKET handle, short events) {
        return (events & (POLLOUT | POLLERR)) != 0 && !((events & POLLERR) != 0 && excepted(handle));
    });
    const int readable = keep_ready(
        read, polled, [](SOCKET, short events) { return (events & (POLLIN | POLLHUP | POLLERR)) != 0; });
    return writable + readable + keep_ready(except, polled, [](SOCKET, short events) {
               return (events & (POLLPRI | POLLERR)) != 0;
           });
}

} // namespace winsock
