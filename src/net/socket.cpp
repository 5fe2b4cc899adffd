#include "net/socket.h"

#include "error/messages.h"
#include "net/wait.h"
#include "net/winsock_message.h"

#include <algorithm>
#include <limits>

namespace {

/// Winsock counts in int; what does not fit is left for the next call.
int winsock_size(std::size_t length) {
    return static_cast<int>(std::min<std::size_t>(length, std::numeric_limits<int>::max()));
}

} // namespace

const char* net_startup() {
    if (net_started)
        return nullptr;
    WSADATA data{};
    if (const int code = WSAStartup(MAKEWORD(2, 0), &data); code != 0) {
        return format_error("Error with wsastartup: %s (%d)\n", system_error_text(static_cast<DWORD>(code)),
                            code);
    }
    net_started = true;
    return nullptr;
}

const char* resolve_host(const char* name, std::uint32_t* address) {
    // 255.255.255.255 reads as the failure value and goes to the look-up, which knows it or not.
    const ULONG dotted = inet_addr(name);
    if (dotted != INADDR_NONE) {
        *address = dotted;
        return nullptr;
    }
    const hostent* host = gethostbyname(name);
    if (host == nullptr) {
        return format_error("Error resolving \"%s\": %s", name,
                            system_error_text(static_cast<DWORD>(WSAGetLastError())));
    }
    if (host->h_addr_list[0] == nullptr)
        return format_error("No addresses found when resolving \"%s\"", name);
    std::copy_n(host->h_addr_list[0], sizeof *address, reinterpret_cast<char*>(address));
    return nullptr;
}

const char* socket_send(Socket& socket, const void* bytes, std::size_t length) {
    const char* next = static_cast<const char*>(bytes);
    while (length != 0) {
        const int offered = winsock_size(length);
        const int sent = send(socket.handle, next, offered, 0);
        if (sent == SOCKET_ERROR) {
            if (WSAGetLastError() != WSAEWOULDBLOCK)
                return net::last_error_message("Bad error without sleep happened in socket_send(): ");
            const int ready = net::wait_writable(socket.handle, socket_io_timeout);
            if (ready == 0)
                return "Timeout in socket_send()";
            if (ready != 1)
                return net::last_error_message("Bad error after sleep happened in socket_send(): ");
            continue;
        }
        if (sent > offered)
            return "send() sent too much - this is a Winsock error";
        next += sent;
        length -= static_cast<std::size_t>(sent);
    }
    // The loop leaves no remainder; the text is kept for the day that it does.
    if (length != 0)
        return format_error("socket_send did not send all data: length = %zu", length);
    return nullptr;
}

const char* socket_recv(Socket& socket, void* buffer, std::size_t capacity, std::size_t* received) {
    for (;;) {
        const int count = recv(socket.handle, static_cast<char*>(buffer), winsock_size(capacity), 0);
        if (count != SOCKET_ERROR) {
            *received = static_cast<std::size_t>(count);
            return nullptr;
        }
        if (WSAGetLastError() != WSAEWOULDBLOCK)
            return net::last_error_message("Bad error happened without sleep in socket_recv(): ");
        const int ready = net::wait_readable(socket.handle, socket_io_timeout);
        if (ready == 0)
            return "Timeout in socket_recv()";
        if (ready != 1)
            return net::last_error_message("Bad error happened in socket_recv(): ");
    }
}

const char* socket_close(Socket& socket) {
    ULONG off = 0;
    if (ioctlsocket(socket.handle, FIONBIO, &off) != 0)
        return net::last_error_message("socket_close: Error at ioctlsocket: ");
    shutdown(socket.handle, SD_BOTH);
    if (closesocket(socket.handle) != 0)
        return net::last_error_message("Error closing socket: ");
    socket.handle = INVALID_SOCKET;
    return nullptr;
}

bool socket_wait_readable(Socket& socket, int seconds) {
    return net::wait_readable(socket.handle, seconds) == 1;
}

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
