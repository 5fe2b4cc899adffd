#include "peers/connections_only.h"

#include "peers/octets.h"
#include "platform/win32.h"
#include "seeded.h"

#include <cstdio>

namespace connections_only {
namespace {

template <std::size_t size> bool say(SOCKET socket, const char (&octets)[size]) {
    return send(socket, octets, size, 0) == static_cast<int>(size);
}

bool hear_offer(SOCKET socket) {
    char octets[sizeof offer];
    int count = 0;
    while (count < static_cast<int>(sizeof octets)) {
        const int received = recv(socket, octets + count, static_cast<int>(sizeof octets) - count, 0);
        if (received <= 0)
            return false;
        count += received;
    }
    for (std::size_t i = 0; i < sizeof octets; ++i) {
        if (octets[i] != offer[i])
            return false;
    }
    return true;
}

bool try_server(int number) {
    const SOCKET connected = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_port = htons(servers.port);
    server.sin_addr.s_addr = inet_addr(servers.address(number).c_str());
    const bool good = connect(connected, reinterpret_cast<const sockaddr*>(&server), sizeof server) == 0 &&
                      say(connected, request) && hear_offer(connected) && say(connected, closing);
    shutdown(connected, SD_BOTH);
    closesocket(connected);
    return good;
}

} // namespace

void test() {
    for (int number = 1; number <= servers.count; ++number) {
        if (!try_server(number)) {
            char text[64];
            std::snprintf(text, sizeof text, "server %d did not answer", number);
            MessageBoxA(nullptr, text, "Error testing connection", MB_ICONEXCLAMATION);
            return;
        }
    }
    MessageBoxA(nullptr, "All have answered.", seeded::success_caption, MB_ICONINFORMATION);
}

} // namespace connections_only
