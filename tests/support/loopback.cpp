#include "support/loopback.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>

namespace loopback {
namespace {

constexpr int patience = 30;

sockaddr* generic(sockaddr_in& address) { return reinterpret_cast<sockaddr*>(&address); }

std::uint16_t bound_port(SOCKET handle) {
    sockaddr_in own{};
    int size = sizeof own;
    EXPECT_EQ(getsockname(handle, generic(own), &size), 0);
    return ntohs(own.sin_port);
}

SOCKET bound_socket() {
    const SOCKET handle = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in own = endpoint(address(), 0);
    EXPECT_EQ(bind(handle, generic(own), sizeof own), 0);
    return handle;
}

} // namespace

std::uint32_t address(unsigned host) { return htonl(0x7F000000U + host); }

sockaddr_in endpoint(std::uint32_t address, std::uint16_t port) {
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    result.sin_addr.s_addr = address;
    return result;
}

std::uint16_t closed_port() {
    const Handle handle(bound_socket());
    return bound_port(handle.get());
}

SOCKET Handle::release() {
    const SOCKET handle = handle_;
    handle_ = INVALID_SOCKET;
    return handle;
}

void Handle::reset(SOCKET handle) {
    close();
    handle_ = handle;
}

void Handle::close() {
    if (handle_ != INVALID_SOCKET)
        closesocket(release());
}

bool readable(SOCKET handle) {
    fd_set set;
    FD_ZERO(&set);
    FD_SET(handle, &set);
    timeval limit{patience, 0};
    return select(0, &set, nullptr, nullptr, &limit) == 1;
}

std::string receive(SOCKET handle, std::size_t length) {
    std::string octets;
    char buffer[65536];
    while (octets.size() < length && readable(handle)) {
        const auto wanted = std::min(sizeof buffer, length - octets.size());
        const int count = recv(handle, buffer, static_cast<int>(wanted), 0);
        if (count <= 0)
            break;
        octets.append(buffer, static_cast<std::size_t>(count));
    }
    return octets;
}

std::string receive_all(SOCKET handle) { return receive(handle, std::numeric_limits<std::size_t>::max()); }

void send_all(SOCKET handle, const std::string& octets) {
    for (std::size_t sent = 0; sent < octets.size();) {
        const int count = send(handle, octets.data() + sent, static_cast<int>(octets.size() - sent), 0);
        if (count <= 0)
            return;
        sent += static_cast<std::size_t>(count);
    }
}

void reset(Handle& handle) {
    const linger abrupt{1, 0};
    setsockopt(handle.get(), SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&abrupt), sizeof abrupt);
    handle.close();
}

Listener::Listener(int backlog) : handle_(bound_socket()), port_(bound_port(handle_.get())) {
    EXPECT_EQ(listen(handle_.get(), backlog), 0);
}

Handle Listener::accept() {
    if (!readable(handle_.get()))
        return Handle();
    return Handle(::accept(handle_.get(), nullptr, nullptr));
}

Peer::Peer(std::function<void(Handle&)> body)
    : thread_([this, run = std::move(body)] {
          Handle connection = listener_.accept();
          if (connection.get() != INVALID_SOCKET)
              run(connection);
      }) {}

void Peer::finish() {
    if (thread_.joinable())
        thread_.join();
}

} // namespace loopback
