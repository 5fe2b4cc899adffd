// Only the calls that the connection test must make: for each server a wait window over the main
// window, a socket that does not block, one send, one receive, one closing send. usage: prescribed_calls
// windows|no-windows PREFIX COUNT PORT     (the servers, as in peers/servers.h)
#include "peers/bare_window.h"
#include "peers/octets.h"
#include "peers/servers.h"
#include "seeded.h"
#include "window/top_level.h"
#include "window/wait_window.h"

#include <cstdlib>
#include <cstring>

namespace {

Servers servers;
bool with_windows = true;

bool wait_for(SOCKET socket, bool readable) {
    fd_set set;
    FD_ZERO(&set);
    FD_SET(socket, &set);
    fd_set excepted = set;
    timeval limit{600, 0};
    return select(0, readable ? &set : nullptr, readable ? nullptr : &set, readable ? nullptr : &excepted,
                  &limit) == 1;
}

template <std::size_t size> bool say(SOCKET socket, const char (&octets)[size]) {
    return send(socket, octets, size, 0) == static_cast<int>(size);
}

bool hear_offer(SOCKET socket) {
    char octets[2048];
    int received = recv(socket, octets, sizeof octets, 0);
    while (received == SOCKET_ERROR && WSAGetLastError() == WSAEWOULDBLOCK && wait_for(socket, true))
        received = recv(socket, octets, sizeof octets, 0);
    return received == sizeof offer && std::memcmp(octets, offer, sizeof offer) == 0;
}

bool connects(SOCKET connecting, int number) {
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_port = htons(servers.port);
    server.sin_addr.s_addr = inet_addr(servers.address(number).c_str());
    ULONG nonblocking = 1;
    ioctlsocket(connecting, FIONBIO, &nonblocking);
    const DWORD no_delay = 0;
    setsockopt(connecting, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&no_delay),
               sizeof no_delay);
    return connect(connecting, reinterpret_cast<const sockaddr*>(&server), sizeof server) == 0 ||
           wait_for(connecting, false);
}

bool try_server(int number) {
    const SOCKET connected = socket(AF_INET, SOCK_STREAM, 0);
    const bool good = connects(connected, number) && say(connected, request) && hear_offer(connected) &&
                      say(connected, closing);
    ULONG blocking = 0;
    ioctlsocket(connected, FIONBIO, &blocking);
    shutdown(connected, SD_BOTH);
    closesocket(connected);
    return good;
}

bool try_server_with_window(int number) {
    WaitWindow wait("Testing connection to server \"" + servers.address(number) + "\" at port " +
                    std::to_string(servers.port) + ". Please be patient.");
    const bool good = try_server(number);
    wait.close();
    return good;
}

void test() {
    for (int number = 1; number <= servers.count; ++number) {
        if (!(with_windows ? try_server_with_window(number) : try_server(number))) {
            MessageBoxA(nullptr, "a server did not answer", "Error testing connection", MB_ICONEXCLAMATION);
            return;
        }
    }
    MessageBoxA(nullptr, "All have answered.", seeded::success_caption, MB_ICONINFORMATION);
}

/// Wait windows are owned by the main window and centred over it.
void remember_main_window(HWND tree) { main_window = GetParent(tree); }

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int show_command) {
    with_windows = __argc > 1 && std::strcmp(__argv[1], "windows") == 0;
    servers = servers_of(__argc, __argv, 2);
    WSADATA data{};
    WSAStartup(MAKEWORD(2, 0), &data);
    return run_bare_window(instance, show_command, {remember_main_window, nullptr, test});
}
