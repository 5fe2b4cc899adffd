/// The behaviour of the socket calls on which the program relies, on every platform.
#include "net/socket.h"
#include "support/loopback.h"

#include <gmock/gmock.h>
#include <vector>

namespace {

using loopback::Handle;

class Winsock : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(net_startup(), nullptr); }
};

fd_set set_of(std::initializer_list<SOCKET> handles) {
    fd_set set;
    FD_ZERO(&set);
    for (const SOCKET each : handles)
        FD_SET(each, &set);
    return set;
}

Handle connected_to(std::uint16_t port) {
    Handle handle(socket(AF_INET, SOCK_STREAM, 0));
    const sockaddr_in peer = loopback::endpoint(loopback::address(), port);
    EXPECT_EQ(connect(handle.get(), reinterpret_cast<const sockaddr*>(&peer), sizeof peer), 0);
    return handle;
}

TEST_F(Winsock, SelectCountsEachSetAndLeavesWhatIsReady) {
    loopback::Listener listener;
    const Handle near_end = connected_to(listener.port());
    const Handle far_end = listener.accept();
    loopback::send_all(far_end.get(), "a");
    ASSERT_TRUE(loopback::readable(near_end.get()));
    fd_set read = set_of({near_end.get(), far_end.get()});
    fd_set write = read;
    fd_set except = read;
    timeval limit{30, 0};
    EXPECT_EQ(select(0, &read, &write, &except, &limit), 3);
    EXPECT_TRUE(FD_ISSET(near_end.get(), &read));
    EXPECT_FALSE(FD_ISSET(far_end.get(), &read));
    EXPECT_TRUE(FD_ISSET(near_end.get(), &write));
    EXPECT_TRUE(FD_ISSET(far_end.get(), &write));
    EXPECT_FALSE(FD_ISSET(near_end.get(), &except));
}

TEST_F(Winsock, SelectEmptiesItsSetsWhenTimeIsOver) {
    loopback::Listener listener;
    const Handle quiet = connected_to(listener.port());
    fd_set read = set_of({quiet.get()});
    timeval limit{0, 1000};
    EXPECT_EQ(select(0, &read, nullptr, nullptr, &limit), 0);
    EXPECT_FALSE(FD_ISSET(quiet.get(), &read));
}

TEST_F(Winsock, AWaitTakesItsTimeOnTheClock) {
    loopback::Listener listener;
    const Handle quiet = connected_to(listener.port());
    fd_set read = set_of({quiet.get()});
    timeval limit{0, 50'000};
    const auto before = GetTickCount64();
    EXPECT_EQ(select(0, &read, nullptr, nullptr, &limit), 0);
    EXPECT_GE(GetTickCount64(), before + 30) << "the system's ticks are coarse";
}

TEST_F(Winsock, SelectFailsForWhatIsNoSocket) {
    SOCKET closed = INVALID_SOCKET;
    {
        const Handle handle(socket(AF_INET, SOCK_STREAM, 0));
        closed = handle.get();
    }
    fd_set read = set_of({closed});
    timeval limit{0, 0};
    EXPECT_EQ(select(0, &read, nullptr, nullptr, &limit), SOCKET_ERROR);
    EXPECT_EQ(WSAGetLastError(), 10038);
}

TEST_F(Winsock, AClosedPeerMakesASocketReadable) {
    loopback::Listener listener;
    const Handle near_end = connected_to(listener.port());
    listener.accept().close();
    EXPECT_TRUE(loopback::readable(near_end.get()));
    char octet = 0;
    EXPECT_EQ(recv(near_end.get(), &octet, 1, 0), 0);
}

TEST_F(Winsock, ASetHoldsAHandleOnce) {
    const fd_set set = set_of({7, 7, 8});
    EXPECT_EQ(set.fd_count, 2U);
}

TEST_F(Winsock, AHealthySocketHasNoError) {
    const Handle handle(socket(AF_INET, SOCK_STREAM, 0));
    int code = 4711;
    int size = sizeof code;
    EXPECT_EQ(getsockopt(handle.get(), SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&code), &size), 0);
    EXPECT_EQ(code, 0);
}

TEST_F(Winsock, ErrorCodesAreWinsocks) {
    loopback::Listener listener;
    const Handle handle(socket(AF_INET, SOCK_STREAM, 0));
    const sockaddr_in taken = loopback::endpoint(loopback::address(), listener.port());
    EXPECT_EQ(bind(handle.get(), reinterpret_cast<const sockaddr*>(&taken), sizeof taken), SOCKET_ERROR);
    EXPECT_EQ(WSAGetLastError(), 10048);
    const sockaddr_in foreign =
        loopback::endpoint(htonl(0xCB007101), 0); // 203.0.113.1, reserved for documentation
    EXPECT_EQ(bind(handle.get(), reinterpret_cast<const sockaddr*>(&foreign), sizeof foreign), SOCKET_ERROR);
    EXPECT_EQ(WSAGetLastError(), 10049);
    char octet = 0;
    EXPECT_EQ(recv(handle.get(), &octet, 1, 0), SOCKET_ERROR);
    EXPECT_EQ(WSAGetLastError(), 10057);
    EXPECT_EQ(closesocket(INVALID_SOCKET), SOCKET_ERROR);
    EXPECT_EQ(WSAGetLastError(), 10038);
    EXPECT_EQ(GetLastError(), 10038U);
}

TEST_F(Winsock, ReadsDottedAddresses) {
    EXPECT_EQ(inet_addr("127.0.0.1"), htonl(0x7F000001));
    EXPECT_EQ(inet_addr("10.1.515"), htonl(0x0A010203));
    EXPECT_EQ(inet_addr("255.255.255.255"), 0xFFFFFFFFU);
    EXPECT_EQ(inet_addr("server"), 0xFFFFFFFFU);
    EXPECT_EQ(inet_addr("10.1.2.256"), 0xFFFFFFFFU);
}

TEST_F(Winsock, SwapsOctets) {
    EXPECT_EQ(htons(0x1234), 0x3412);
    EXPECT_EQ(ntohs(0x3412), 0x1234);
    EXPECT_EQ(htonl(0x12345678), 0x78563412U);
    EXPECT_EQ(ntohl(0x78563412), 0x12345678U);
}

TEST_F(Winsock, TheAddressTableTellsTheSizeThatItNeeds) {
    ULONG size = 0;
    MIB_IPADDRTABLE none{};
    EXPECT_EQ(GetIpAddrTable(&none, &size, FALSE), 122U);
    ASSERT_GE(size, 4U + 24U);
    std::vector<char> memory(size);
    auto* table = reinterpret_cast<MIB_IPADDRTABLE*>(memory.data());
    EXPECT_EQ(GetIpAddrTable(table, &size, FALSE), 0U);
    EXPECT_GE(table->dwNumEntries, 1U);
}

} // namespace
