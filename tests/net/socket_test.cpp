#include "net/socket.h"

#include "base/messages.h"
#include "support/loopback.h"

#include <gmock/gmock.h>
#include <string>

namespace {

using loopback::Handle;
using loopback::Peer;
using testing::StartsWith;
using testing::StrEq;

/// The program's own value, before a test changes it.
const int shipped_io_timeout = socket_io_timeout;

/// The layer's text for a Winsock code: `before`, the words, the number.
std::string said(const std::string& before, DWORD code) {
    return before + system_error_string(code) + " (" + std::to_string(code) + ")";
}

class SocketLayer : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(net_startup(), nullptr);
        socket_io_timeout = 30;
    }
    void TearDown() override {
        socket_io_timeout = shipped_io_timeout;
        if (socket_.handle != INVALID_SOCKET)
            closesocket(socket_.handle);
    }

    void connect_to(std::uint16_t port, unsigned flags = net::connect_nonblocking) {
        ASSERT_EQ(socket_connect(loopback::address(), port, &socket_, flags), nullptr);
    }
    std::string receive(std::size_t capacity) {
        std::string octets(capacity, '?');
        std::size_t received = 4711;
        EXPECT_EQ(socket_recv(socket_, octets.data(), capacity, &received), nullptr);
        octets.resize(received);
        return octets;
    }
    const char* receive_failing() {
        char octet = 0;
        std::size_t received = 0;
        return socket_recv(socket_, &octet, 1, &received);
    }

    Socket socket_;
};

TEST_F(SocketLayer, WaitsTenMinutesUnlessATestSaysOtherwise) { EXPECT_EQ(shipped_io_timeout, 600); }

TEST_F(SocketLayer, StartsOnceAndSucceedsEverAfter) {
    EXPECT_TRUE(net::started);
    EXPECT_EQ(net_startup(), nullptr);
}

TEST_F(SocketLayer, ResolvesADottedAddress) {
    std::uint32_t address = 0;
    EXPECT_EQ(resolve_host("10.1.2.3", &address), nullptr);
    EXPECT_EQ(address, htonl(0x0A010203));
}

TEST_F(SocketLayer, ResolvesAName) {
    std::uint32_t address = 0;
    EXPECT_EQ(resolve_host("localhost", &address), nullptr);
    EXPECT_EQ(address, loopback::address());
}

TEST_F(SocketLayer, TellsThatANameDoesNotResolve) {
    // A label of more than 63 characters is refused without asking any name server.
    const std::string name(70, 'a');
    std::uint32_t address = 0;
    EXPECT_THAT(resolve_host(name.c_str(), &address), StartsWith("Error resolving \"" + name + "\": "));
}

TEST_F(SocketLayer, ConnectsSendsAndReceives) {
    std::string heard;
    Peer peer([&heard](Handle& connection) {
        heard = loopback::receive(connection.get(), 5);
        loopback::send_all(connection.get(), "answer");
    });
    connect_to(peer.port());
    EXPECT_EQ(socket_send(socket_, "hello", 5), nullptr);
    EXPECT_EQ(receive(100), "answer");
    peer.finish();
    EXPECT_EQ(heard, "hello");
}

TEST_F(SocketLayer, ReportsARefusedConnectAndLeavesNoSocket) {
    EXPECT_THAT(
        socket_connect(loopback::address(), loopback::closed_port(), &socket_, net::connect_nonblocking),
        StrEq(said("Error connecting: ", 10061)));
    EXPECT_EQ(socket_.handle, INVALID_SOCKET);
}

TEST_F(SocketLayer, ReportsARefusedConnectOfABlockingSocket) {
    EXPECT_THAT(socket_connect(loopback::address(), loopback::closed_port(), &socket_, 0),
                StrEq(said("Error connecting: ", 10061)));
    EXPECT_EQ(socket_.handle, INVALID_SOCKET);
}

TEST_F(SocketLayer, StaysNonblockingAfterTheConnect) {
    loopback::Listener listener;
    connect_to(listener.port());
    char octet = 0;
    EXPECT_EQ(recv(socket_.handle, &octet, 1, 0), -1);
    EXPECT_EQ(WSAGetLastError(), 10035);
}

int no_delay(SOCKET handle) {
    int value = 0;
    int size = sizeof value;
    EXPECT_EQ(getsockopt(handle, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<char*>(&value), &size), 0);
    return value;
}

TEST_F(SocketLayer, LeavesNaglesAlgorithmOnForTheAgentsFlags) {
    loopback::Listener listener;
    connect_to(listener.port(), 1U | 4U);
    EXPECT_EQ(no_delay(socket_.handle), 0);
}

TEST_F(SocketLayer, SwitchesNaglesAlgorithmOffWithItsFlag) {
    loopback::Listener listener;
    connect_to(listener.port(), 1U | 2U);
    EXPECT_NE(no_delay(socket_.handle), 0);
}

TEST_F(SocketLayer, SendsMoreThanTheSystemTakesAtOnce) {
    std::string sent(std::size_t{16} << 20, '\0');
    for (std::size_t i = 0; i < sent.size(); ++i)
        sent[i] = static_cast<char>(i * 31 + i / 65536);
    std::string heard;
    Peer peer([&heard](Handle& connection) { heard = loopback::receive_all(connection.get()); });
    connect_to(peer.port());
    EXPECT_EQ(socket_send(socket_, sent.data(), sent.size()), nullptr);
    EXPECT_EQ(socket_close(socket_), nullptr);
    peer.finish();
    EXPECT_TRUE(heard == sent) << heard.size() << " octets arrived";
}

TEST_F(SocketLayer, SendsNothingOfNothing) {
    loopback::Listener listener;
    connect_to(listener.port());
    EXPECT_EQ(socket_send(socket_, nullptr, 0), nullptr);
}

TEST_F(SocketLayer, GivesUpSendingToAPeerThatDoesNotRead) {
    loopback::Listener listener;
    connect_to(listener.port());
    const Handle connection = listener.accept();
    socket_io_timeout = 0;
    const std::string much(std::size_t{64} << 20, 'x');
    EXPECT_THAT(socket_send(socket_, much.data(), much.size()), StrEq("Timeout in socket_send()"));
}

TEST_F(SocketLayer, ReceivesNoMoreThanTheCapacity) {
    Peer peer([](Handle& connection) {
        loopback::send_all(connection.get(), "abcdef");
        loopback::receive_all(connection.get());
    });
    connect_to(peer.port());
    std::string all = receive(4);
    EXPECT_LE(all.size(), 4U);
    while (all.size() < 6)
        all += receive(4);
    EXPECT_EQ(all, "abcdef");
    EXPECT_EQ(socket_close(socket_), nullptr);
}

TEST_F(SocketLayer, WaitsForWhatComesLater) {
    Peer peer([](Handle& connection) {
        loopback::receive(connection.get(), 1);
        loopback::send_all(connection.get(), "b");
    });
    connect_to(peer.port());
    EXPECT_EQ(socket_send(socket_, "a", 1), nullptr);
    EXPECT_EQ(receive(1), "b");
}

TEST_F(SocketLayer, ReceivesZeroOctetsFromAPeerThatClosed) {
    Peer peer([](Handle&) {});
    connect_to(peer.port());
    EXPECT_EQ(receive(10), "");
}

TEST_F(SocketLayer, GivesUpReceivingFromASilentPeer) {
    loopback::Listener listener;
    connect_to(listener.port());
    socket_io_timeout = 0;
    EXPECT_THAT(receive_failing(), StrEq("Timeout in socket_recv()"));
}

TEST_F(SocketLayer, ReportsASendOnNoSocket) {
    EXPECT_THAT(socket_send(socket_, "a", 1),
                StrEq(said("Bad error without sleep happened in socket_send(): ", 10038)));
}

TEST_F(SocketLayer, ReportsAReceiveOnNoSocket) {
    EXPECT_THAT(receive_failing(), StrEq(said("Bad error happened without sleep in socket_recv(): ", 10038)));
}

TEST_F(SocketLayer, ReportsAClosedPeerWhileSending) {
    // A reset that arrives earlier would be reported as a failure of the connect.
    Peer peer([](Handle& connection) {
        loopback::receive(connection.get(), 1);
        loopback::reset(connection);
    });
    connect_to(peer.port());
    ASSERT_EQ(socket_send(socket_, "x", 1), nullptr);
    peer.finish();
    // The reset is reported to the first send or, on some systems, to the one after it.
    const std::string much(std::size_t{1} << 20, 'x');
    const char* message = nullptr;
    while (message == nullptr)
        message = socket_send(socket_, much.data(), much.size());
    EXPECT_THAT(message, testing::AnyOf(said("Bad error without sleep happened in socket_send(): ", 10054),
                                        said("Bad error without sleep happened in socket_send(): ", 10053)));
}

TEST_F(SocketLayer, ClosesBothDirections) {
    std::string heard = "nothing";
    Peer peer([&heard](Handle& connection) { heard = loopback::receive_all(connection.get()); });
    connect_to(peer.port());
    EXPECT_EQ(socket_close(socket_), nullptr);
    EXPECT_EQ(socket_.handle, INVALID_SOCKET);
    peer.finish();
    EXPECT_EQ(heard, "");
}

TEST_F(SocketLayer, ReportsThatThereIsNothingToClose) {
    EXPECT_THAT(socket_close(socket_), StrEq(said("socket_close: Error at ioctlsocket: ", 10038)));
}

TEST_F(SocketLayer, TellsWhetherSomethingCanBeReceived) {
    Peer peer([](Handle& connection) {
        loopback::receive(connection.get(), 1);
        loopback::send_all(connection.get(), "b");
    });
    connect_to(peer.port());
    EXPECT_FALSE(socket_wait_readable(socket_, 0));
    EXPECT_EQ(socket_send(socket_, "a", 1), nullptr);
    EXPECT_TRUE(socket_wait_readable(socket_, 30));
}

TEST_F(SocketLayer, HasNothingToReceiveOnNoSocket) { EXPECT_FALSE(socket_wait_readable(socket_, 0)); }

TEST_F(SocketLayer, TellsItsLocalAddress) {
    loopback::Listener listener;
    connect_to(listener.port());
    std::uint32_t address = 0;
    std::uint16_t port = 0;
    EXPECT_TRUE(socket_local_address(socket_, &address, &port));
    EXPECT_EQ(address, loopback::address());
    EXPECT_NE(port, 0);
    EXPECT_NE(port, listener.port());
    std::uint32_t only_address = 0;
    std::uint16_t only_port = 0;
    EXPECT_TRUE(socket_local_address(socket_, &only_address, nullptr));
    EXPECT_TRUE(socket_local_address(socket_, nullptr, &only_port));
    EXPECT_EQ(only_address, address);
    EXPECT_EQ(only_port, port);
}

TEST_F(SocketLayer, HasNoLocalAddressWithoutASocket) {
    EXPECT_FALSE(socket_local_address(socket_, nullptr, nullptr));
}

} // namespace
