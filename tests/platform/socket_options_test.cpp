/// The behaviour on which the program relies when it starts Winsock, looks up names and sets options of
/// sockets.
#include "net/socket.h"
#include "support/loopback.h"

#include <cstring>
#include <gmock/gmock.h>

namespace {

using loopback::Handle;

class SocketOptions : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(net_startup(), nullptr);
        stream_.reset(socket(AF_INET, SOCK_STREAM, 0));
        datagrams_.reset(socket(AF_INET, SOCK_DGRAM, 0));
    }

    static int option(const Handle& handle, int level, int name) {
        DWORD value = 0;
        int size = sizeof value;
        EXPECT_EQ(getsockopt(handle.get(), level, name, reinterpret_cast<char*>(&value), &size), 0);
        return value != 0 ? 1 : 0;
    }
    static int set(const Handle& handle, int level, int name, int value) {
        return setsockopt(handle.get(), level, name, reinterpret_cast<const char*>(&value), sizeof value);
    }

    Handle stream_;
    Handle datagrams_;
};

TEST_F(SocketOptions, StartingTellsTheVersions) {
    WSADATA data{};
    ASSERT_EQ(WSAStartup(MAKEWORD(2, 0), &data), 0);
    EXPECT_EQ(data.wVersion, 0x0002);
    EXPECT_EQ(data.wHighVersion, 0x0202);
}

TEST_F(SocketOptions, NaglesAlgorithmIsOnUntilItIsSwitchedOff) {
    EXPECT_EQ(option(stream_, IPPROTO_TCP, TCP_NODELAY), 0);
    EXPECT_EQ(set(stream_, IPPROTO_TCP, TCP_NODELAY, 1), 0);
    EXPECT_EQ(option(stream_, IPPROTO_TCP, TCP_NODELAY), 1);
}

TEST_F(SocketOptions, BroadcastIsForbiddenUntilItIsAllowed) {
    EXPECT_EQ(option(datagrams_, SOL_SOCKET, SO_BROADCAST), 0);
    EXPECT_EQ(set(datagrams_, SOL_SOCKET, SO_BROADCAST, 1), 0);
    EXPECT_EQ(option(datagrams_, SOL_SOCKET, SO_BROADCAST), 1);
}

TEST_F(SocketOptions, ANonblockingSocketHasNothingYet) {
    ULONG nonblocking = 1;
    ASSERT_EQ(ioctlsocket(datagrams_.get(), static_cast<long>(FIONBIO), &nonblocking), 0);
    sockaddr_in own = loopback::endpoint(loopback::address(), 0);
    ASSERT_EQ(bind(datagrams_.get(), reinterpret_cast<const sockaddr*>(&own), sizeof own), 0);
    char octet = 0;
    EXPECT_EQ(recv(datagrams_.get(), &octet, 1, 0), SOCKET_ERROR);
    EXPECT_EQ(WSAGetLastError(), 10035);
}

TEST_F(SocketOptions, OnlySocketsHaveOptions) {
    datagrams_.close();
    ULONG nonblocking = 1;
    EXPECT_EQ(ioctlsocket(INVALID_SOCKET, static_cast<long>(FIONBIO), &nonblocking), SOCKET_ERROR);
    EXPECT_EQ(WSAGetLastError(), 10038);
}

TEST_F(SocketOptions, AShutDownConnectionEndsForThePeerToo) {
    loopback::Listener listener;
    const sockaddr_in peer = loopback::endpoint(loopback::address(), listener.port());
    ASSERT_EQ(connect(stream_.get(), reinterpret_cast<const sockaddr*>(&peer), sizeof peer), 0);
    const Handle far_end = listener.accept();
    EXPECT_EQ(shutdown(stream_.get(), SD_BOTH), 0);
    ASSERT_TRUE(loopback::readable(far_end.get()));
    char octet = 0;
    EXPECT_EQ(recv(far_end.get(), &octet, 1, 0), 0);
}

TEST_F(SocketOptions, LocalhostIsThisMachine) {
    const hostent* host = gethostbyname("localhost");
    ASSERT_NE(host, nullptr);
    EXPECT_EQ(host->h_addrtype, AF_INET);
    ASSERT_EQ(host->h_length, 4);
    EXPECT_EQ(std::memcmp(host->h_addr_list[0], "\x7F\0\0\x01", 4), 0);
}

} // namespace
