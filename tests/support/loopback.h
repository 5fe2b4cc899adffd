#pragma once
/// Real peers for the network tests, on 127.0.0.1 and on threads of their own. Every wait of a peer ends
/// after some seconds, so that a broken program makes a test fail instead of hanging it.
#include "platform/win32.h"

#include <cstdint>
#include <functional>
#include <string>
#include <thread>

namespace loopback {

/// 127.0.0.`host` in network byte order.
std::uint32_t address(unsigned host = 1);
sockaddr_in endpoint(std::uint32_t address, std::uint16_t port);
/// A TCP port without a listener.
std::uint16_t closed_port();

/// Owns a socket.
class Handle {
public:
    explicit Handle(SOCKET handle = INVALID_SOCKET) : handle_(handle) {}
    Handle(Handle&& other) noexcept : handle_(other.release()) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { close(); }
    SOCKET get() const { return handle_; }
    SOCKET release();
    void reset(SOCKET handle);
    void close();

private:
    SOCKET handle_;
};

/// True when `handle` can be read, or a connection accepted, within some seconds.
bool readable(SOCKET handle);
/// Receives until `length` octets are there, the peer closes or time is over.
std::string receive(SOCKET handle, std::size_t length);
/// Receives until the peer closes.
std::string receive_all(SOCKET handle);
void send_all(SOCKET handle, const std::string& octets);
/// Closes so that the peer's connection is reset.
void reset(Handle& handle);

/// Listens on a port that the system picks.
class Listener {
public:
    explicit Listener(int backlog = 8);
    std::uint16_t port() const { return port_; }
    Handle accept();
    void close() { handle_.close(); }

private:
    Handle handle_;
    std::uint16_t port_;
};

/// Accepts one connection and lets `body` talk on it; the destructor waits for its end.
class Peer {
public:
    explicit Peer(std::function<void(Handle&)> body);
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;
    ~Peer() { finish(); }
    std::uint16_t port() const { return listener_.port(); }
    void finish();

private:
    Listener listener_;
    std::thread thread_;
};

} // namespace loopback
