#include "net/udp.h"
#include "substitute/control.h"
#include "support/loopback.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace {

/// A descriptor that is too large for the host's own sets; -1 if the process may not have that many.
int high_descriptor(SOCKET handle) {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
    return ::fcntl(static_cast<int>(handle), F_DUPFD, 2000);
}

TEST(WinsockSubstitute, WaitsForSocketsWithHighNumbers) {
    loopback::Peer peer([](loopback::Handle& connection) { loopback::send_all(connection.get(), "a"); });
    Socket low;
    ASSERT_EQ(socket_connect(loopback::address(), peer.port(), &low, net::connect_nonblocking), nullptr);
    const int number = high_descriptor(low.handle);
    if (number < 0)
        GTEST_SKIP() << "this process may not have 2000 descriptors";
    Socket high{static_cast<SOCKET>(number)};
    EXPECT_TRUE(socket_wait_readable(high, 30));
    EXPECT_EQ(socket_close(high), nullptr);
    EXPECT_EQ(socket_close(low), nullptr);
}

TEST(WinsockSubstitute, CountsOnlyTheSocketsOfTheThreadThatIsWatched) {
    substitute::reset();
    const loopback::Handle own(socket(AF_INET, SOCK_STREAM, 0));
    std::thread([] { const loopback::Handle peers(socket(AF_INET, SOCK_STREAM, 0)); }).join();
    EXPECT_EQ(substitute::open_sockets(), 1U);
    EXPECT_EQ(substitute::call_count("socket"), 1);
    substitute::reset();
}

TEST(WinsockSubstitute, LetsTimePassOnTheClockAloneWhileNobodyWillSend) {
    constexpr int day = 86'400;
    substitute::reset();
    const loopback::Handle peer(socket(AF_INET, SOCK_DGRAM, 0));
    const sockaddr_in any = loopback::endpoint(loopback::address(), 0);
    Socket own;
    ASSERT_TRUE(udp_open(&own));
    ASSERT_EQ(bind(own.handle, reinterpret_cast<const sockaddr*>(&any), sizeof any), 0);
    sockaddr_in target{};
    int size = sizeof target;
    ASSERT_EQ(getsockname(own.handle, reinterpret_cast<sockaddr*>(&target), &size), 0);
    bool sent = false;
    substitute::skip_waits_when([&] {
        if (!sent) {
            sendto(peer.get(), "a", 1, 0, reinterpret_cast<const sockaddr*>(&target), sizeof target);
            return sent = true;
        }
        char octet = 0;
        recvfrom(own.handle, &octet, 1, 0, nullptr, nullptr);
        return true;
    });
    const std::uint64_t start = substitute::clock_now();
    EXPECT_TRUE(socket_wait_readable(own, day));
    EXPECT_LT(substitute::clock_now() - start, day * 1000ULL);
    const std::uint64_t then = substitute::clock_now();
    EXPECT_FALSE(socket_wait_readable(own, day));
    EXPECT_EQ(substitute::clock_now() - then, day * 1000ULL);
    EXPECT_TRUE(udp_close(own));
    substitute::reset();
}

TEST(WinsockSubstitute, FailsNoCallOfAPeer) {
    substitute::reset();
    substitute::fail_call("socket");
    SOCKET peers = INVALID_SOCKET;
    std::thread([&peers] { peers = loopback::Handle(socket(AF_INET, SOCK_STREAM, 0)).get(); }).join();
    EXPECT_NE(peers, INVALID_SOCKET);
    EXPECT_EQ(socket(AF_INET, SOCK_STREAM, 0), INVALID_SOCKET);
    substitute::reset();
}

TEST(WinsockSubstitute, KnowsTheLoopbackNetworkAloneUntilToldOtherwise) {
    substitute::reset();
    ULONG size = sizeof(MIB_IPADDRTABLE);
    MIB_IPADDRTABLE table{};
    EXPECT_EQ(GetIpAddrTable(&table, &size, FALSE), 0U);
    EXPECT_EQ(table.dwNumEntries, 1U);
    EXPECT_EQ(table.table[0].dwAddr, loopback::address());
    EXPECT_EQ(table.table[0].dwMask, htonl(0xFF000000));
}

TEST(WinsockSubstitute, UnderstandsOnlyTheBlockingSwitch) {
    const loopback::Handle handle(socket(AF_INET, SOCK_STREAM, 0));
    ULONG argument = 0;
    EXPECT_EQ(ioctlsocket(handle.get(), 0x1234, &argument), SOCKET_ERROR);
    EXPECT_EQ(WSAGetLastError(), 10022);
}

} // namespace
