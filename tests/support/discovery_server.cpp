#include "support/discovery_server.h"

#include "support/system.h"

#include <chrono>
#include <gtest/gtest.h>

namespace loopback {
namespace {

Handle datagram_socket(std::uint32_t own_address) {
    Handle handle(socket(AF_INET, SOCK_DGRAM, 0));
    const sockaddr_in own = endpoint(own_address, 0);
    EXPECT_EQ(bind(handle.get(), reinterpret_cast<const sockaddr*>(&own), sizeof own), 0);
    return handle;
}

std::uint16_t port_of(SOCKET handle) {
    sockaddr_in own{};
    int size = sizeof own;
    EXPECT_EQ(getsockname(handle, reinterpret_cast<sockaddr*>(&own), &size), 0);
    return ntohs(own.sin_port);
}

} // namespace

std::string discovery_answer() { return {"\x12\x34\x56\x78\0\0\0\0\0\0\0\x05\0\0\0\x02", 16}; }

DiscoveryServer::DiscoveryServer(Answers answers, Manner manner)
    : answers_(std::move(answers)), manner_(manner),
      handle_(datagram_socket(manner == hears_broadcasts ? INADDR_ANY : address())),
      port_(port_of(handle_.get())), thread_([this] { serve(); }) {
    if (manner != never_stops_answering)
        skip_silence([this](std::size_t sent) { return has_answered(sent); });
}

DiscoveryServer::~DiscoveryServer() {
    skip_silence(nullptr);
    over_ = true;
    // The thread waits for a datagram, so this one wakes it.
    const Handle waker(socket(AF_INET, SOCK_DGRAM, 0));
    const sockaddr_in target = endpoint(address(), port_);
    sendto(waker.get(), "", 0, 0, reinterpret_cast<const sockaddr*>(&target), sizeof target);
    thread_.join();
}

std::vector<std::string> DiscoveryServer::requests() {
    const std::lock_guard lock(guard_);
    return requests_;
}

/// Waits for at most a second: if a request was lost, the scan then waits for real.
bool DiscoveryServer::has_answered(std::size_t requests) {
    std::unique_lock lock(guard_);
    return answered_one_.wait_for(lock, std::chrono::seconds(1), [&] { return answered_ == requests; });
}

void DiscoveryServer::serve() {
    for (int request = 1;; ++request) {
        char octets[4096];
        sockaddr_in scanner{};
        int size = sizeof scanner;
        const int count =
            recvfrom(handle_.get(), octets, sizeof octets, 0, reinterpret_cast<sockaddr*>(&scanner), &size);
        if (over_ || count < 0)
            return;
        {
            const std::lock_guard lock(guard_);
            requests_.emplace_back(octets, static_cast<std::size_t>(count));
        }
        answer(scanner, request);
        const std::lock_guard lock(guard_);
        ++answered_;
        answered_one_.notify_one();
    }
}

void DiscoveryServer::answer(const sockaddr_in& scanner, int request) {
    const std::vector<Answer> answers = answers_(request);
    do {
        for (const Answer& each : answers) {
            sendto(socket_of(each.host), each.octets.data(), static_cast<int>(each.octets.size()), 0,
                   reinterpret_cast<const sockaddr*>(&scanner), sizeof scanner);
        }
    } while (manner_ == never_stops_answering && !over_);
}

SOCKET DiscoveryServer::socket_of(unsigned host) {
    const auto found = hosts_.find(host);
    return (found != hosts_.end() ? found : hosts_.emplace(host, datagram_socket(address(host))).first)
        ->second.get();
}

} // namespace loopback
