// Servers that accept every agent, on an address and those after it, all at one port, which is printed when
// they are ready. One connection at a time, until the process is ended.
// usage: answering [COUNT [ADDRESS]]     (otherwise one, and 127.0.0.1)
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace {

using namespace std::literals;

constexpr auto offer = "\x61\x80\x02\x02\x02\x05\xA1\x80\x01\x01\x01\x01\x01\x00\x00\x00\x00\x00"sv;
constexpr auto end_of_request = "\x00\x00\x00\x00"sv;

[[noreturn]] void give_up(const char* what) {
    std::perror(what);
    std::exit(1);
}

/// Port 0 becomes the one that the system chose.
int listen_on(std::uint32_t where, std::uint16_t& port) {
    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(where);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(listener, generic, size) != 0 || listen(listener, 16) != 0 ||
        getsockname(listener, generic, &size) != 0)
        give_up("answering");
    port = ntohs(address.sin_port);
    return listener;
}

/// Hears the agent out, answers, and reads until it closes.
void answer(int listener) {
    const int agent = accept(listener, nullptr, nullptr);
    char octets[4096];
    std::size_t count = 0;
    while (!std::string_view(octets, count).ends_with(end_of_request)) {
        const ssize_t received = recv(agent, octets + count, sizeof octets - count, 0);
        if (received <= 0)
            break;
        count += static_cast<std::size_t>(received);
    }
    send(agent, offer.data(), offer.size(), MSG_NOSIGNAL);
    while (recv(agent, octets, sizeof octets, 0) > 0) {
    }
    close(agent);
}

} // namespace

int main(int count, char** arguments) {
    const auto servers = static_cast<std::uint32_t>(count > 1 ? std::atoi(arguments[1]) : 1);
    const std::uint32_t first = ntohl(inet_addr(count > 2 ? arguments[2] : "127.0.0.1"));
    std::vector<pollfd> listeners;
    std::uint16_t port = 0;
    for (std::uint32_t number = 0; number < servers; ++number)
        listeners.push_back({listen_on(first + number, port), POLLIN, 0});
    std::printf("%d\n", port);
    std::fflush(stdout);
    while (poll(listeners.data(), listeners.size(), -1) > 0) {
        for (const pollfd& listener : listeners) {
            if (listener.revents != 0)
                answer(listener.fd);
        }
    }
    give_up("answering");
}
