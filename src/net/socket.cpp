#include "net/socket.h"

#include "base/messages.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

// Messages of this layer end with the system's words for an error code and the code in brackets.

/// `what` followed by "words (code)".
const char* code_message(const char* what, int code) {
    return format_error("%s%s (%d)", what, system_error_text(static_cast<DWORD>(code)), code);
}

/// The same with WSAGetLastError; must be called before anything changes that.
const char* last_error_message(const char* what) { return code_message(what, WSAGetLastError()); }

/// The set with only `handle`.
fd_set only(SOCKET handle) {
    fd_set set;
    FD_ZERO(&set);
    FD_SET(handle, &set);
    return set;
}

using std::chrono::milliseconds;

constexpr milliseconds connect_limit = std::chrono::minutes(10);

bool patience_is_over() { return net::patience != nullptr && net::patience() <= milliseconds::zero(); }

/// The length of a wait, limited by the time that the current server may still take.
timeval at_most(milliseconds limit) {
    if (net::patience != nullptr)
        limit = std::clamp(net::patience(), milliseconds::zero(), limit);
    timeval length{};
    length.tv_sec = static_cast<decltype(length.tv_sec)>(limit.count() / 1000);
    length.tv_usec = static_cast<decltype(length.tv_usec)>(limit.count() % 1000 * 1000);
    return length;
}

/// `select` for reading; its result: 1 ready, 0 time over, -1 failed.
int wait_readable(SOCKET handle, int seconds) {
    fd_set set = only(handle);
    timeval limit = at_most(std::chrono::seconds(seconds));
    return select(0, &set, nullptr, nullptr, &limit);
}

/// The same for writing.
int wait_writable(SOCKET handle, int seconds) {
    fd_set set = only(handle);
    timeval limit = at_most(std::chrono::seconds(seconds));
    return select(0, nullptr, &set, nullptr, &limit);
}

/// Winsock counts in int; the rest is left for the next call.
int winsock_size(std::size_t length) {
    return static_cast<int>(std::min<std::size_t>(length, std::numeric_limits<int>::max()));
}

const char* failed_connect(SOCKET handle) {
    int code = 0;
    int size = sizeof code;
    if (getsockopt(handle, SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&code), &size) != 0)
        return last_error_message("Error retrieving connection status: ");
    return code_message("Error connecting: ", code);
}

/// Waits until a pending connect has succeeded (null) or failed.
const char* wait_connected(SOCKET handle) {
    fd_set writable = only(handle);
    fd_set excepted = writable;
    timeval limit = at_most(connect_limit);
    const int ready = select(0, nullptr, &writable, &excepted, &limit);
    if (ready == 0)
        return "Connection timed out";
    if (ready != 1)
        return format_error("Error connecting: Select returned: %d", ready);
    if (FD_ISSET(handle, &writable))
        return nullptr;
    if (!FD_ISSET(handle, &excepted))
        return "Error connecting: Select returned, but socket isn't present";
    return failed_connect(handle);
}

const char* set_modes(SOCKET handle, unsigned flags) {
    ULONG nonblocking = (flags & net::connect_nonblocking) != 0 ? 1 : 0;
    if (ioctlsocket(handle, FIONBIO, &nonblocking) != 0)
        return last_error_message("Error setting socket to nonblocking: ");
    // Written also when it is 0, which leaves Nagle's algorithm on.
    const DWORD no_delay = (flags & net::connect_no_delay) != 0 ? 1 : 0;
    if (setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&no_delay),
                   sizeof no_delay) != 0)
        return last_error_message("Error disabling Nagle: ");
    return nullptr;
}

const char* connect_to(SOCKET handle, std::uint32_t address, std::uint16_t port) {
    sockaddr_in peer{};
    peer.sin_family = AF_INET;
    peer.sin_port = htons(port);
    peer.sin_addr.s_addr = address;
    if (connect(handle, reinterpret_cast<const sockaddr*>(&peer), sizeof peer) == 0)
        return nullptr;
    if (WSAGetLastError() != WSAEWOULDBLOCK)
        return last_error_message("Error connecting: ");
    return wait_connected(handle);
}

/// Closes a socket that the caller never received. The message must already contain the error's code.
void drop(Socket& socket) {
    if (socket.handle != INVALID_SOCKET)
        closesocket(socket.handle);
}

} // namespace

const char* net_startup() {
    if (net::started)
        return nullptr;
    WSADATA data{};
    if (const int code = WSAStartup(MAKEWORD(2, 0), &data); code != 0) {
        return format_error("Error with wsastartup: %s (%d)\n", system_error_text(static_cast<DWORD>(code)),
                            code);
    }
    net::started = true;
    return nullptr;
}

std::string start_sockets() {
    const char* const problem = net_startup();
    return problem == nullptr ? "" : std::string("Error initializing socket subsystem: ") + problem;
}

net::HostLookup net::look_up_host(const char* name) {
    const hostent* host = gethostbyname(name);
    if (host == nullptr)
        return {.failed = true, .code = WSAGetLastError()};
    HostLookup found;
    if (host->h_addr_list[0] != nullptr)
        std::memcpy(&found.address.emplace(), host->h_addr_list[0], sizeof(std::uint32_t));
    return found;
}

const char* resolve_host(const char* name, std::uint32_t* address) {
    // 255.255.255.255 equals the failure value, so the look-up decides about it.
    const ULONG dotted = inet_addr(name);
    if (dotted != INADDR_NONE) {
        *address = dotted;
        return nullptr;
    }
    const net::HostLookup found = net::host_lookup(name);
    if (found.failed) {
        return format_error("Error resolving \"%s\": %s", name,
                            system_error_text(static_cast<DWORD>(found.code)));
    }
    if (!found.address)
        return format_error("No addresses found when resolving \"%s\"", name);
    *address = *found.address;
    return nullptr;
}

const char* socket_connect(std::uint32_t address, std::uint16_t port, Socket* out, unsigned flags) {
    *out = {};
    net::OwnedSocket<drop> connecting;
    connecting.handle = socket(AF_INET, SOCK_STREAM, 0);
    if (connecting.handle == INVALID_SOCKET)
        return last_error_message("Error creating socket: ");
    if (const char* problem = set_modes(connecting.handle, flags))
        return problem;
    if (const char* problem = connect_to(connecting.handle, address, port))
        return problem;
    *out = connecting.release();
    return nullptr;
}

const char* socket_send(Socket& socket, const void* bytes, std::size_t length) {
    const char* next = static_cast<const char*>(bytes);
    while (length != 0) {
        const int offered = winsock_size(length);
        const int sent = send(socket.handle, next, offered, 0);
        if (sent == SOCKET_ERROR) {
            if (WSAGetLastError() != WSAEWOULDBLOCK)
                return last_error_message("Bad error without sleep happened in socket_send(): ");
            const int ready = wait_writable(socket.handle, socket_io_timeout);
            if (ready == 0)
                return "Timeout in socket_send()";
            if (ready != 1)
                return last_error_message("Bad error after sleep happened in socket_send(): ");
            continue;
        }
        if (sent > offered)
            return "send() sent too much - this is a Winsock error";
        next += sent;
        length -= static_cast<std::size_t>(sent);
    }
    // Cannot happen, because the loop sends everything; the text is required all the same.
    if (length != 0)
        return format_error("socket_send did not send all data: length = %zu", length);
    return nullptr;
}

const char* socket_recv(Socket& socket, void* buffer, std::size_t capacity, std::size_t* received) {
    for (;;) {
        // This never waits while the server sends, however slowly or fast.
        if (patience_is_over())
            return "Timeout in socket_recv()";
        const int count = recv(socket.handle, static_cast<char*>(buffer), winsock_size(capacity), 0);
        if (count != SOCKET_ERROR) {
            *received = static_cast<std::size_t>(count);
            return nullptr;
        }
        if (WSAGetLastError() != WSAEWOULDBLOCK)
            return last_error_message("Bad error happened without sleep in socket_recv(): ");
        const int ready = wait_readable(socket.handle, socket_io_timeout);
        if (ready == 0)
            return "Timeout in socket_recv()";
        if (ready != 1)
            return last_error_message("Bad error happened in socket_recv(): ");
    }
}

const char* socket_close(Socket& socket) {
    ULONG off = 0;
    if (ioctlsocket(socket.handle, FIONBIO, &off) != 0)
        return last_error_message("socket_close: Error at ioctlsocket: ");
    shutdown(socket.handle, SD_BOTH);
    if (closesocket(socket.handle) != 0)
        return last_error_message("Error closing socket: ");
    socket.handle = INVALID_SOCKET;
    return nullptr;
}

bool socket_wait_readable(Socket& socket, int seconds) { return wait_readable(socket.handle, seconds) == 1; }

bool socket_local_address(Socket& socket, std::uint32_t* address, std::uint16_t* port) {
    sockaddr_in own{};
    int size = sizeof own;
    if (getsockname(socket.handle, reinterpret_cast<sockaddr*>(&own), &size) != 0)
        return false;
    if (address != nullptr)
        *address = own.sin_addr.s_addr;
    if (port != nullptr)
        *port = ntohs(own.sin_port);
    return true;
}
