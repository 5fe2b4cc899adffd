#include "net/socket.h"

#include "error/messages.h"
#include "net/wait.h"
#include "net/winsock_message.h"

namespace {

constexpr int connect_timeout = 600;

/// Closes a socket that never became the caller's and passes on the message, which is complete by now.
const char* give_up(SOCKET handle, const char* message) {
    closesocket(handle);
    return message;
}

const char* failed_connect(SOCKET handle) {
    int code = 0;
    int size = sizeof code;
    if (getsockopt(handle, SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&code), &size) != 0)
        return net::last_error_message("Error retrieving connection status: ");
    return net::code_message("Error connecting: ", code);
}

/// Waits until a connect that is under way has succeeded (null) or not.
const char* wait_connected(SOCKET handle) {
    fd_set writable = net::set_of(handle);
    fd_set excepted = writable;
    timeval limit{connect_timeout, 0};
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
    ULONG nonblocking = (flags & connect_nonblocking) != 0 ? 1 : 0;
    if (ioctlsocket(handle, FIONBIO, &nonblocking) != 0)
        return net::last_error_message("Error setting socket to nonblocking: ");
    // Written also when it is 0, which leaves Nagle's algorithm on.
    const DWORD no_delay = (flags & connect_no_delay) != 0 ? 1 : 0;
    if (setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&no_delay),
                   sizeof no_delay) != 0)
        return net::last_error_message("Error disabling Nagle: ");
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
        return net::last_error_message("Error connecting: ");
    return wait_connected(handle);
}

} // namespace

const char* socket_connect(std::uint32_t address, std::uint16_t port, Socket* out, unsigned flags) {
    out->handle = INVALID_SOCKET;
    const SOCKET handle = socket(AF_INET, SOCK_STREAM, 0);
    if (handle == INVALID_SOCKET)
        return net::last_error_message("Error creating socket: ");
    if (const char* message = set_modes(handle, flags))
        return give_up(handle, message);
    if (const char* message = connect_to(handle, address, port))
        return give_up(handle, message);
    out->handle = handle;
    return nullptr;
}
