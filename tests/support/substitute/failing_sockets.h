#pragma once
/// Sockets whose calls fail, one at a time, with a peer of the test.
#include "base/messages.h"
#include "net/socket.h"
#include "substitute/control.h"
#include "support/loopback.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

/// The program's own value, before a test changes it.
inline const int shipped_io_timeout = socket_io_timeout;

/// The socket layer's text for a failure: the operation, the system's words and the number.
inline std::string said(const std::string& before, DWORD code) {
    return before + system_error_string(code) + " (" + std::to_string(code) + ")";
}

class FailingSockets : public testing::Test {
protected:
    FailingSockets() { substitute::reset(); }
    void TearDown() override {
        socket_io_timeout = shipped_io_timeout;
        EXPECT_EQ(substitute::open_sockets(), 0U) << "a socket was left open";
        substitute::reset();
        net::started = false;
    }

    const char* connect_to(std::uint16_t port, unsigned flags = net::connect_nonblocking) {
        return socket_connect(loopback::address(), port, &socket_, flags);
    }
    /// Connects to a peer of this test.
    void connect_to_listener() {
        ASSERT_EQ(connect_to(listener_.port()), nullptr);
        waited_ = substitute::select_waits().size();
    }
    /// The waits since then.
    std::vector<int> waits() const {
        const std::vector<int> all = substitute::select_waits();
        return {all.begin() + static_cast<std::ptrdiff_t>(waited_), all.end()};
    }
    void close() {
        EXPECT_EQ(socket_close(socket_), nullptr);
        listener_.close();
    }
    const char* receive() {
        char octet = 0;
        std::size_t received = 0;
        return socket_recv(socket_, &octet, 1, &received);
    }

    loopback::Listener listener_;
    Socket socket_;
    std::size_t waited_ = 0;
};
