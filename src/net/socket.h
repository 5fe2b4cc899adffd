#pragma once
/// TCP over IPv4 with time-outs. Operations that return a text return null on success. Otherwise the text is
/// the whole message for the user, which is valid until two further messages are formatted (base/messages.h).
/// Addresses are in network byte order, as in in_addr; ports are in host order.
#include "platform/win32.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

/// One socket of the system, without an owner: `socket_close`, `udp_close` or an OwnedSocket closes it.
struct Socket {
    SOCKET handle = INVALID_SOCKET;
};

/// How many seconds one wait of `socket_send` and `socket_recv` may last; only tests change it.
inline int socket_io_timeout = 600;

namespace net {

/// How long the current server may still take. A program that limits the whole attempt instead of each wait
/// sets it; the window's program never does.
inline std::chrono::milliseconds (*patience)() = nullptr;

/// The result of looking up a host's name.
struct HostLookup {
    bool failed = false;
    /// The system's code when it failed.
    int code = 0;
    /// The first address; a host may have none.
    std::optional<std::uint32_t> address = {};
};
/// Looks the name up with the system's function.
HostLookup look_up_host(const char* name);
/// The function with which `resolve_host` looks up names. The system's own may wait long for a silent name
/// server; a program that must not wait sets another.
inline HostLookup (*host_lookup)(const char* name) = look_up_host;

/// Options of `socket_connect` for the new socket.
enum ConnectFlags : unsigned {
    connect_nonblocking = 1,
    connect_no_delay = 2,
    /// Set by the buffered stream; no effect on the socket.
    connect_buffered = 4
};

/// Owns a socket and closes it with `Close` unless it was released.
template <auto Close> struct OwnedSocket : Socket {
    OwnedSocket() = default;
    OwnedSocket(const OwnedSocket&) = delete;
    OwnedSocket& operator=(const OwnedSocket&) = delete;
    ~OwnedSocket() { Close(*this); }

    /// Gives up the ownership.
    Socket release() { return {std::exchange(handle, INVALID_SOCKET)}; }
};

/// True once the socket layer was started; only a test clears it.
inline bool started = false;

} // namespace net

/// Starts the socket layer of the process, once; later calls do nothing.
const char* net_startup();
/// The same, with the whole text for the user; empty when it succeeds.
std::string start_sockets();

/// The address of `name`, which is a dotted address or a host's name; the first one if a host has several.
const char* resolve_host(const char* name, std::uint32_t* address);

/// Connects `out`, waiting no longer than 600 seconds; `flags` of net::ConnectFlags. Leaves no
/// socket open when it fails.
const char* socket_connect(std::uint32_t address, std::uint16_t port, Socket* out, unsigned flags);
/// Sends all octets.
const char* socket_send(Socket& socket, const void* bytes, std::size_t length);
/// Receives once; `received` is 0 when the peer closed.
const char* socket_recv(Socket& socket, void* buffer, std::size_t capacity, std::size_t* received);
/// Closes in both directions. If the socket cannot be made blocking again, it stays open.
const char* socket_close(Socket& socket);

/// Waits up to `seconds` for data; false if none arrived or the wait failed.
bool socket_wait_readable(Socket& socket, int seconds);
/// Reads the socket's local address and port, either of which may be null; false if the system refuses.
bool socket_local_address(Socket& socket, std::uint32_t* address, std::uint16_t* port);
