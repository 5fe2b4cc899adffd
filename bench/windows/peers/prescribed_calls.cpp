// What the connection test may not leave out, and no more: for each server a wait window, each element sent
// by itself, each part of the answer read by itself, over a socket that does not block. usage:
// prescribed_calls PORT
#include "peers/bare_window.h"
#include "peers/octets.h"
#include "seeded.h"
#include "service/wait_window.h"

#include <cstdlib>
#include <cstring>

namespace {

unsigned short port = 0;

bool wait_for(SOCKET socket, bool readable) {
    fd_set set;
    FD_ZERO(&set);
    FD_SET(socket, &set);
    timeval limit{60, 0};
    return select(0, readable ? &set : nullptr, readable ? nullptr : &set, nullptr, &limit) == 1;
}

bool say(SOCKET socket, const char* octets, std::initializer_list<int> elements) {
    for (const int size : elements) {
        if (send(socket, octets, size, 0) != size)
            return false;
        octets += size;
    }
    return true;
}

bool hear(SOCKET socket, char* octets, int size) {
    int received = recv(socket, octets, size, 0);
    while (received == SOCKET_ERROR && WSAGetLastError() == WSAEWOULDBLOCK && wait_for(socket, true))
        received = recv(socket, octets, size, 0);
    return received == size;
}

/// Identifiers, lengths and contents one by one; the version has two octets.
bool hear_offer(SOCKET socket) {
    char octets[sizeof offer];
    bool good = hear(socket, octets, 1) && hear(socket, octets + 1, 1) && hear(socket, octets + 2, 1) &&
                hear(socket, octets + 3, 1) && hear(socket, octets + 4, 2);
    for (std::size_t i = 6; i < sizeof octets; ++i)
        good = good && hear(socket, octets + i, 1);
    return good && std::memcmp(octets, offer, sizeof octets) == 0;
}

bool try_server(int number) {
    const SOCKET connected = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_port = htons(port);
    server.sin_addr.s_addr = htonl(0x7F000000u + static_cast<unsigned>(number));
    ULONG nonblocking = 1;
    ioctlsocket(connected, FIONBIO, &nonblocking);
    const DWORD no_delay = 0;
    setsockopt(connected, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&no_delay),
               sizeof no_delay);
    connect(connected, reinterpret_cast<const sockaddr*>(&server), sizeof server);
    const bool good = wait_for(connected, false) &&
                      say(connected, wishes, {2, 4, 2, 6, 13, 2, 3, 3, 3, 2, 2}) && hear_offer(connected) &&
                      say(connected, closing, {2, 2});
    nonblocking = 0;
    ioctlsocket(connected, FIONBIO, &nonblocking);
    shutdown(connected, SD_BOTH);
    closesocket(connected);
    return good;
}

void test() {
    for (int number = 1; number <= seeded::servers; ++number) {
        const HWND wait = open_wait_window("Testing connection to server \"127." + std::to_string(number) +
                                           "\" at port " + std::to_string(port) + ". Please be patient.");
        const bool good = try_server(number);
        close_wait_window(wait);
        if (!good) {
            MessageBoxA(nullptr, "a server did not answer", "Error testing connection", MB_ICONEXCLAMATION);
            return;
        }
    }
    MessageBoxA(nullptr, "All have answered.", seeded::success_caption, MB_ICONINFORMATION);
}

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int show_command) {
    port = static_cast<unsigned short>(__argc > 1 ? std::atoi(__argv[1]) : 0);
    WSADATA data{};
    WSAStartup(MAKEWORD(2, 0), &data);
    return run_bare_window(instance, show_command, {nullptr, nullptr, test});
}
