// Times handshakes with distant servers, alternating with a bare loop that does the same in as few calls as
// possible. usage: far_bench RESULT_FILE PREFIX COUNT PORT     (the servers, as in
// windows/peers/servers.h)
#include "net/socket.h"
#include "protocol/negotiation.h"
#include "windows/peers/octets.h"
#include "windows/peers/servers.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>

namespace {

constexpr int rounds = 3;

const char* as_we_do(const char* address, std::uint16_t port) {
    return connect_and_negotiate(address, port, "web1", "example.org", nullptr, nullptr);
}

const char* talk(SOCKET connected) {
    char octets[sizeof offer];
    if (send(connected, request, sizeof request, 0) != static_cast<int>(sizeof request) ||
        recv(connected, octets, sizeof octets, 0) != static_cast<int>(sizeof octets) ||
        std::memcmp(octets, offer, sizeof octets) != 0 ||
        send(connected, closing, sizeof closing, 0) != static_cast<int>(sizeof closing))
        return "a server did not answer";
    return nullptr;
}

const char* barely(const char* address, std::uint16_t port) {
    const SOCKET connecting = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_port = htons(port);
    server.sin_addr.s_addr = inet_addr(address);
    const bool connected =
        connect(connecting, reinterpret_cast<const sockaddr*>(&server), sizeof server) == 0;
    const char* problem = connected ? talk(connecting) : "a server is not there";
    shutdown(connecting, SD_BOTH);
    closesocket(connecting);
    return problem;
}

struct Way {
    const char* name;
    const char* (*handshake)(const char* address, std::uint16_t port);
    std::string values;
};

bool time_one(Way& way, const Servers& servers, int number) {
    const auto begin = std::chrono::steady_clock::now();
    const char* problem = way.handshake(servers.address(number).c_str(), servers.port);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    if (problem != nullptr)
        std::fprintf(stderr, "far_bench: %s: %s\n", way.name, problem);
    way.values += (way.values.empty() ? "" : ", ") + std::to_string(taken.count());
    return problem == nullptr;
}

std::string sample(const Way& way) {
    return R"({"name": "handshake, 20 ms away/)" + std::string(way.name) + R"(", "unit": "s", "values": [)" +
           way.values + "]}";
}

} // namespace

int main(int count, char** arguments) {
    if (count != 5 || net_startup() != nullptr)
        return 2;
    const Servers servers = servers_of(count, arguments, 2);
    Way ours{"tavrinconfig", as_we_do, ""};
    Way bare{"bare program", barely, ""};
    for (int number = 0; number < rounds * servers.count; ++number) {
        if (!time_one(ours, servers, 1 + number % servers.count) ||
            !time_one(bare, servers, 1 + number % servers.count))
            return 1;
    }
    std::ofstream file(arguments[1]);
    file << "{\"samples\": [" << sample(ours) << ", " << sample(bare) << "]}\n";
    return file.flush() ? 0 : 1;
}
