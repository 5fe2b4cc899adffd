#include "net/discovery.h"
#include "substitute/control.h"
#include "support/discovery_server.h"
#include "support/scan_result.h"
#include "support/short_memory.h"

#include <gmock/gmock.h>
#include <string>

namespace {

using loopback::Answer;
using loopback::discovery_answer;
using loopback::DiscoveryServer;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StrEq;

const std::string request_octets("\x12\x34\x56\x78\0\0\x14\x21\0\0\0\x05\0\0\0\x01\xF0\xF1\xB3\x4C", 20);

DWORD ip(unsigned a, unsigned b, unsigned c, unsigned d) { return htonl(a << 24 | b << 16 | c << 8 | d); }

/// Nothing here leaves the loopback network: either the interface table names only it, or datagrams are kept.
class NativeDiscovery : public testing::Test {
protected:
    void SetUp() override { substitute::reset(); }
    void TearDown() override {
        EXPECT_EQ(substitute::open_sockets(), 0U);
        substitute::reset();
    }

    /// Keeps datagrams instead of sending them, and lets no pass wait.
    static void keep_requests() {
        substitute::keep_datagrams();
        for (int pass = 1; pass <= 3; ++pass)
            substitute::time_out_select(pass);
    }
    /// Where the requests went, in order.
    static std::vector<DWORD> targets() {
        std::vector<DWORD> addresses;
        for (const auto& each : substitute::kept_datagrams())
            addresses.push_back(each.address);
        return addresses;
    }
    static std::vector<std::string> scan(std::uint16_t port = 5151) {
        char* found = nullptr;
        EXPECT_EQ(scan_servers(port, &found), nullptr);
        return servers_in(found);
    }
    static std::vector<std::string> scan(const DiscoveryServer& server) {
        substitute::set_interfaces({{ip(127, 0, 0, 1), ip(255, 255, 255, 255)}});
        return scan(server.port());
    }
    static std::string scan_failing(std::uint16_t port = 5151) {
        char none = 'x';
        char* found = &none;
        const char* message = scan_servers(port, &found);
        EXPECT_EQ(found, nullptr);
        return message == nullptr ? "no failure" : message;
    }
};

TEST_F(NativeDiscovery, SendsToEveryNetworkInEachPass) {
    substitute::set_interfaces({{ip(10, 1, 2, 3), ip(255, 255, 255, 0)},
                                {ip(192, 168, 77, 1), ip(255, 255, 0, 0)},
                                {ip(172, 16, 0, 9), ip(255, 255, 255, 248)}});
    keep_requests();
    EXPECT_THAT(scan(), IsEmpty());
    const DWORD first = ip(10, 1, 2, 255);
    const DWORD second = ip(192, 168, 255, 255);
    const DWORD third = ip(172, 16, 0, 15);
    EXPECT_THAT(targets(), ElementsAre(first, second, third, first, second, third, first, second, third));
    EXPECT_THAT(substitute::select_waits(), ElementsAre(1, 1, 1));
    for (const auto& each : substitute::kept_datagrams()) {
        EXPECT_EQ(each.port, 5151);
        EXPECT_EQ(each.octets, request_octets);
    }
}

constexpr DWORD everybody = 0xFFFFFFFF;

TEST_F(NativeDiscovery, AsksEverybodyWithoutATableOrNetworksInIt) {
    const auto expect_everybody = [](int reads) {
        keep_requests();
        EXPECT_THAT(scan(), IsEmpty());
        EXPECT_THAT(targets(), ElementsAre(everybody, everybody, everybody));
        EXPECT_EQ(substitute::call_count("GetIpAddrTable"), reads);
        substitute::reset();
    };
    substitute::set_interfaces({});
    expect_everybody(1);
    substitute::fail_call("GetIpAddrTable");
    expect_everybody(1);
    substitute::set_interfaces({2, {ip(10, 1, 2, 3), ip(255, 0, 0, 0)}});
    substitute::fail_call("GetIpAddrTable", 2); // which is given a larger table
    expect_everybody(2);
}

TEST_F(NativeDiscovery, AsksEverybodyWithoutMemoryForTheTable) {
    for (const std::size_t request : {2, 3, 4}) { // the small table, the larger one, the list made of it
        SetUp();
        substitute::set_interfaces({2, {ip(10, 1, 2, 3), ip(255, 0, 0, 0)}});
        keep_requests();
        const ShortMemory memory(request, true);
        EXPECT_THAT(scan(), IsEmpty());
        EXPECT_THAT(targets(), ElementsAre(everybody, everybody, everybody)) << request;
    }
}

TEST_F(NativeDiscovery, ReportsThatThereIsNoMemoryForAnyList) {
    const ShortMemory memory(2);
    EXPECT_THAT(scan_failing(), StrEq("No memory for small nic structure"));
    EXPECT_EQ(substitute::call_count("socket"), 0);
}

TEST_F(NativeDiscovery, NamesNetworksByTheirPlaceInTheTable) {
    substitute::set_interfaces({12, {ip(10, 1, 2, 3), ip(255, 255, 240, 0)}});
    const net::InterfaceList list = net::list_interfaces();
    EXPECT_EQ(substitute::call_count("GetIpAddrTable"), 2);
    EXPECT_STREQ(list[0].name, "no name(0)");
    EXPECT_STREQ(list[11].name, "no name(11)");
    EXPECT_STREQ(list[12].name, "");
    EXPECT_EQ(list[11].address, ip(10, 1, 2, 3));
    EXPECT_EQ(list[11].mask, ip(255, 255, 240, 0));
    EXPECT_EQ(list[11].broadcast, ip(10, 1, 15, 255));
}

TEST_F(NativeDiscovery, ReadsASmallTableAtOnceAndCallsTheFallbackADummy) {
    substitute::set_interfaces({{ip(10, 1, 2, 3), ip(255, 255, 255, 255)}});
    const net::InterfaceList one = net::list_interfaces();
    EXPECT_EQ(substitute::call_count("GetIpAddrTable"), 1);
    EXPECT_EQ(one[0].broadcast, ip(10, 1, 2, 3));
    EXPECT_STREQ(one[1].name, "");
    substitute::set_interfaces({});
    const net::InterfaceList none = net::list_interfaces();
    EXPECT_STREQ(none[0].name, "dummy");
    EXPECT_EQ(none[0].broadcast, everybody);
    EXPECT_STREQ(none[1].name, "");
}

TEST_F(NativeDiscovery, ReportsThatThereIsNoSocketOrNoBroadcast) {
    substitute::fail_call("socket");
    EXPECT_THAT(scan_failing(), StrEq("Could not create socket"));
    substitute::fail_call("setsockopt");
    EXPECT_THAT(scan_failing(), StrEq("UDP receive failed"));
}

TEST_F(NativeDiscovery, EndsWhenARequestCannotBeSent) {
    for (int request = 1; request <= 6; ++request) {
        SetUp();
        substitute::set_interfaces({2, {ip(10, 1, 2, 3), ip(255, 0, 0, 0)}});
        keep_requests();
        substitute::fail_call("sendto", request, 10055);
        EXPECT_THAT(scan_failing(), StrEq("UDP send failed error code 10055"));
        EXPECT_EQ(substitute::call_count("sendto"), request);
        EXPECT_EQ(substitute::open_sockets(), 0U);
    }
}

TEST_F(NativeDiscovery, ReturnsNothingOfWhatItFoundWhenALaterPassFails) {
    DiscoveryServer server([](int) { return std::vector<Answer>{{2, discovery_answer()}}; });
    substitute::set_interfaces({{ip(127, 0, 0, 1), ip(255, 255, 255, 255)}});
    substitute::fail_call("sendto", 2, 10055);
    EXPECT_THAT(scan_failing(server.port()), StrEq("UDP send failed error code 10055"));
}

TEST_F(NativeDiscovery, GoesOnPastUnreachableNetworks) {
    for (const DWORD code : {10051, 10065}) {
        SetUp();
        substitute::set_interfaces({2, {ip(10, 1, 2, 3), ip(255, 0, 0, 0)}});
        keep_requests();
        substitute::fail_call("sendto", 3, code);
        EXPECT_THAT(scan(), IsEmpty());
        EXPECT_EQ(substitute::call_count("sendto"), 6);
        EXPECT_EQ(targets().size(), 5U);
    }
}

TEST_F(NativeDiscovery, GoesOnPastADatagramThatCannotBeReceived) {
    for (const DWORD code : {10040, 10052, 10054}) {
        SetUp();
        DiscoveryServer server([](int) { return std::vector<Answer>{{2, discovery_answer()}}; });
        substitute::fail_call("recvfrom", 1, code);
        EXPECT_THAT(scan(server), ElementsAre("127.0.0.2"));
    }
}

TEST_F(NativeDiscovery, EndsWhenNothingCanBeReceivedAnyMore) {
    DiscoveryServer server([](int) { return std::vector<Answer>{{2, discovery_answer()}}; });
    substitute::set_interfaces({{ip(127, 0, 0, 1), ip(255, 255, 255, 255)}});
    substitute::fail_call("recvfrom", 2, 10050);
    EXPECT_THAT(scan_failing(server.port()), StrEq("UDP receive failed (10050)"));
}

TEST_F(NativeDiscovery, TakesAFailedWaitForSilence) {
    substitute::keep_datagrams();
    for (int pass = 1; pass <= 3; ++pass)
        substitute::answer_call("select", pass, -1);
    EXPECT_THAT(scan(), IsEmpty());
    EXPECT_EQ(substitute::kept_datagrams().size(), 3U);
}

TEST_F(NativeDiscovery, ListsEachSenderOnceInTheOrderOfFirstAnswers) {
    const std::string answer = discovery_answer();
    DiscoveryServer server([&answer](int request) {
        if (request == 1)
            return std::vector<Answer>{{7, answer}, {7, answer}, {3, answer}};
        if (request == 2)
            return std::vector<Answer>{{3, answer}, {9, answer}, {7, answer}};
        return std::vector<Answer>{{1, answer}, {9, answer}};
    });
    EXPECT_THAT(scan(server), ElementsAre("127.0.0.7", "127.0.0.3", "127.0.0.9", "127.0.0.1"));
}

TEST_F(NativeDiscovery, ListsManyServers) {
    std::vector<std::string> expected;
    std::vector<Answer> answers;
    for (unsigned host = 10; host < 40; ++host) {
        answers.push_back({host, discovery_answer()});
        expected.push_back("127.0.0." + std::to_string(host));
    }
    DiscoveryServer server([&answers](int) { return answers; });
    EXPECT_THAT(scan(server), testing::ElementsAreArray(expected));
}

TEST_F(NativeDiscovery, RunsOutOfMemoryWhileAnswersCome) {
    std::vector<Answer> answers;
    for (unsigned host = 2; host < 20; ++host)
        answers.push_back({host, discovery_answer()});
    DiscoveryServer server([&answers](int) { return answers; });
    substitute::set_interfaces({{ip(127, 0, 0, 1), ip(255, 255, 255, 255)}});
    const ShortMemory memory(4); // after the block, the table and the list
    EXPECT_THAT(scan_failing(server.port()), StrEq("Out of memory"));
}

/// Four addresses of ten octets and two of twelve fill the 64 octets that there are at first.
TEST(ScanMemory, IsNeededForTheEndOfAFullResult) {
    const DiscoveryServer server([](int) {
        std::vector<Answer> answers;
        for (const unsigned host : {1, 2, 3, 4, 100, 101})
            answers.push_back({host, discovery_answer()});
        return answers;
    });
    const net::Interface network[2]{
        {"no name(0)", loopback::address(), htonl(0xFFFFFFFF), loopback::address()}, {}};
    const ShortMemory memory(2);
    char* found = nullptr;
    EXPECT_THAT(scan_servers(server.port(), &found, {}, network), StrEq("Out of memory"));
    EXPECT_EQ(found, nullptr);
    EXPECT_THAT(memory.sizes(), ElementsAre(64, 65));
}

/// How long a pass goes on while answers come. The first pass hears one server. Its answer is there when the
/// given time of the pass has gone by; at the next look every pass is over.
class ScanLimit : public testing::Test {
protected:
    ScanLimit() { substitute::reset(); }
    ~ScanLimit() override { substitute::reset(); }

    std::vector<std::string> servers_found_after(std::uint64_t time) {
        const std::uint64_t heard = substitute::clock_now() + time;
        substitute::on_clock([heard](std::uint64_t now) {
            substitute::on_clock([](std::uint64_t) { substitute::advance_clock(1'000'000); });
            substitute::advance_clock(heard - now);
        });
        substitute::time_out_select(3);
        substitute::time_out_select(4);
        char* found = nullptr;
        EXPECT_EQ(scan_servers(server_.port(), &found), nullptr);
        return servers_in(found);
    }

private:
    DiscoveryServer server_{[](int request) {
                                return request == 1 ? std::vector<Answer>{{2, discovery_answer()},
                                                                          {3, discovery_answer()}}
                                                    : std::vector<Answer>{};
                            },
                            DiscoveryServer::hears_broadcasts};
};

TEST_F(ScanLimit, IsAMinute) { EXPECT_THAT(servers_found_after(60'000), IsEmpty()); }
TEST_F(ScanLimit, IsNoLess) { EXPECT_THAT(servers_found_after(59'999), ElementsAre("127.0.0.2")); }

} // namespace
