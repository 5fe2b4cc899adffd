#pragma once
/// TCP over IPv4 with time-outs. An operation that returns a text succeeded when it is null; otherwise the
/// text is the whole message for the user, to be used before two further messages are formatted
/// (base/messages.h). Addresses are in network byte order, as in in_addr; ports are in host order.
#include "platform/win32.h"

#include <cstddef>
#include <cstdint>
#include <utility>

/// One socket of the system. It is not closed by itself: `socket_close`, `udp_close` or an owner does.
struct Socket {
    SOCKET handle = INVALID_SOCKET;
};

/// How many seconds one wait of `socket_send` and `socket_recv` may last. A program that has no window sets
/// both limits once, as it starts; the window's program never does.
inline int socket_io_timeout = 600;

namespace net {

/// How many seconds `socket_connect` may wait.
inline int connect_timeout = 600;

/// What `socket_connect` is told about the new socket.
enum ConnectFlags : unsigned {
    connect_nonblocking = 1,
    connect_no_delay = 2,
    /// Set by the buffered stream; no effect on the socket.
    connect_buffered = 4
};

/// A socket that is closed with `Close` unless somebody takes it over.
template <auto Close> struct OwnedSocket : Socket {
    OwnedSocket() = default;
    OwnedSocket(const OwnedSocket&) = delete;
    OwnedSocket& operator=(const OwnedSocket&) = delete;
    ~OwnedSocket() { Close(*this); }

    /// Hands the socket over.
    Socket release() { return {std::exchange(handle, INVALID_SOCKET)}; }
};

/// True once the socket layer was started; only a test clears it.
inline bool started = false;

} // namespace net

/// Starts the socket layer of the process, once; later calls do nothing.
const char* net_startup();

/// The address of `name`, a dotted address or a host's name (then its first).
const char* resolve_host(const char* name, std::uint32_t* address);

/// Connects `out`, waiting no longer than `net::connect_timeout`; `flags` of net::ConnectFlags. Leaves no
/// socket open when it fails.
const char* socket_connect(std::uint32_t address, std::uint16_t port, Socket* out, unsigned flags);
/// Sends all octets.
const char* socket_send(Socket& socket, const void* bytes, std::size_t length);
/// Receives once; `received` is 0 when the peer closed.
const char* socket_recv(Socket& socket, void* buffer, std::size_t capacity, std::size_t* received);
/// Closes in both directions. When the socket cannot be made blocking again it stays open.
const char* socket_close(Socket& socket);

/// Waits up to `seconds` for something to receive; false when nothing came, or the wait failed.
bool socket_wait_readable(Socket& socket, int seconds);
/// The socket's own address and port, either of which may be null; false when the system does not tell.
bool socket_local_address(Socket& socket, std::uint32_t* address, std::uint16_t* port);
