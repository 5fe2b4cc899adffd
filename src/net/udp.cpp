#include "net/udp.h"

#include <cstdio>

bool udp_open(Socket* out) {
    out->handle = socket(AF_INET, SOCK_DGRAM, 0);
    return out->handle != INVALID_SOCKET;
}

const char* udp_enable_broadcast(Socket& socket, bool on) {
    static char problem[128];
    const DWORD value = on ? 1 : 0;
    if (setsockopt(socket.handle, SOL_SOCKET, SO_BROADCAST, reinterpret_cast<const char*>(&value),
                   sizeof value) == 0)
        return nullptr;
    // The failure is not about receiving, but the text is deliberate: users and support staff know it.
    std::snprintf(problem, sizeof problem, "UDP receive failed");
    return problem;
}

const char* udp_send_to(Socket& socket, std::uint32_t address, std::uint16_t port, const void* bytes,
                        std::size_t length) {
    static char problem[256];
    sockaddr_in target{};
    target.sin_family = AF_INET;
    target.sin_port = htons(port);
    target.sin_addr.s_addr = address;
    if (sendto(socket.handle, static_cast<const char*>(bytes), static_cast<int>(length), 0,
               reinterpret_cast<const sockaddr*>(&target), sizeof target) != SOCKET_ERROR)
        return nullptr;
    const int code = WSAGetLastError();
    // One network that is down must not end the scan of the others.
    if (code == WSAENETUNREACH || code == WSAEHOSTUNREACH)
        return nullptr;
    std::snprintf(problem, sizeof problem, "UDP send failed error code %i", code);
    return problem;
}

const char* udp_receive_from(Socket& socket, std::uint32_t* address, std::uint16_t* port, void* buffer,
                             std::size_t* length) {
    static char problem[128];
    sockaddr_in sender{};
    int size = sizeof sender;
    const int count = recvfrom(socket.handle, static_cast<char*>(buffer), static_cast<int>(*length), 0,
                               reinterpret_cast<sockaddr*>(&sender), &size);
    if (count == SOCKET_ERROR) {
        std::snprintf(problem, sizeof problem, "UDP receive failed (%d)", static_cast<int>(GetLastError()));
        return problem;
    }
    *address = sender.sin_addr.s_addr;
    *port = ntohs(sender.sin_port);
    *length = static_cast<std::size_t>(count);
    return nullptr;
}

bool udp_close(Socket& socket) {
    if (socket.handle == INVALID_SOCKET)
        return false;
    const bool closed = closesocket(socket.handle) == 0;
    if (closed)
        socket.handle = INVALID_SOCKET;
    return closed;
}
