#include "net/discovery.h"

#include "net/socket.h"
#include "support/discovery_server.h"
#include "support/scan_result.h"
#include "support/short_memory.h"

#include <gmock/gmock.h>
#include <string>

namespace {

using loopback::Answer;
using loopback::discovery_answer;
using loopback::DiscoveryServer;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StrEq;

const std::string request_octets("\x12\x34\x56\x78\0\0\x14\x21\0\0\0\x05\0\0\0\x01\xF0\xF1\xB3\x4C", 20);

/// Every scan here is of the loopback network alone.
class Discovery : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(net_startup(), nullptr); }

    std::vector<std::string> scan(const DiscoveryServer& server) {
        char* found = nullptr;
        EXPECT_EQ(scan_servers(server.port(), &found, waits_, networks_), nullptr);
        return servers_in(found);
    }
    net::ScanWaits waits_;
    /// One host only, so that nothing else on this machine is disturbed.
    net::Interface networks_[3]{
        {"no name(0)", loopback::address(), htonl(0xFFFFFFFF), loopback::address()}, {}, {}};
};

TEST_F(Discovery, AsksThreeTimesAndListsWhoAnswered) {
    DiscoveryServer server([](int) { return std::vector<Answer>{{1, discovery_answer()}}; });
    EXPECT_THAT(scan(server), ElementsAre("127.0.0.1"));
    EXPECT_THAT(server.requests(), ElementsAre(request_octets, request_octets, request_octets));
}

std::string changed_answer(std::size_t at) {
    std::string octets = discovery_answer();
    octets[at] = static_cast<char>(octets[at] + 1);
    return octets;
}

TEST_F(Discovery, DropsWhatIsNoAnswer) {
    DiscoveryServer server([](int) {
        return std::vector<Answer>{{1, ""},
                                   {1, discovery_answer().substr(0, 15)},
                                   {1, changed_answer(3)},
                                   {1, changed_answer(11)},
                                   {1, changed_answer(15)},
                                   {1, request_octets},
                                   {1, discovery_answer() + std::string(4081, 'x')}}; // does not fit
    });
    EXPECT_THAT(scan(server), IsEmpty());
    EXPECT_EQ(server.requests().size(), 3U);
}

TEST_F(Discovery, TakesAnAnswerThatFillsTheBuffer) {
    DiscoveryServer server([](int) {
        return std::vector<Answer>{{1, discovery_answer() + std::string(4080, 'x')}};
    });
    EXPECT_THAT(scan(server), ElementsAre("127.0.0.1"));
}

TEST_F(Discovery, BroadcastsOnEveryNetwork) {
    networks_[0].broadcast = htonl(0x7FFFFFFF);
    networks_[1] = networks_[0];
    DiscoveryServer server(
        [](int) {
            return std::vector<Answer>{{1, discovery_answer()}};
        },
        DiscoveryServer::hears_broadcasts);
    EXPECT_THAT(scan(server), ElementsAre("127.0.0.1"));
    EXPECT_EQ(server.requests().size(), 6U);
    EXPECT_THAT(server.requests(), Each(request_octets));
}

TEST_F(Discovery, EndsThoughAnswersDoNot) {
    waits_.pass = 1;
    DiscoveryServer server(
        [](int) {
            return std::vector<Answer>{{1, "rubbish"}, {1, discovery_answer()}};
        },
        DiscoveryServer::never_stops_answering);
    EXPECT_THAT(scan(server), ElementsAre("127.0.0.1"));
}

TEST_F(Discovery, NeedsAPlaceForItsResult) {
    EXPECT_THAT(scan_servers(9, nullptr), StrEq("found_servers must not be NULL"));
}

TEST_F(Discovery, NeedsMemoryForItsResult) {
    const ShortMemory memory(1);
    char* found = nullptr;
    EXPECT_THAT(scan_servers(9, &found), StrEq("Out of memory"));
    EXPECT_EQ(found, nullptr);
    EXPECT_THAT(memory.sizes(), ElementsAre(64));
}

TEST_F(Discovery, KnowsTheLoopbackNetwork) {
    const net::InterfaceList list = net::list_interfaces();
    ASSERT_NE(list, nullptr);
    bool seen = false;
    int position = 0;
    for (; list[position].name[0] != '\0'; ++position) {
        EXPECT_EQ(list[position].name, "no name(" + std::to_string(position) + ")");
        if (list[position].address != loopback::address())
            continue;
        seen = true;
        EXPECT_EQ(list[position].mask, htonl(0xFF000000));
        EXPECT_EQ(list[position].broadcast, htonl(0x7FFFFFFF));
    }
    EXPECT_TRUE(seen);
}

TEST(DiscoveryRequest, IsTheseTwentyOctets) {
    EXPECT_THAT(net::discovery_request(),
                ElementsAre(0x12, 0x34, 0x56, 0x78, 0x00, 0x00, 0x14, 0x21, 0x00, 0x00, 0x00, 0x05, 0x00,
                            0x00, 0x00, 0x01, 0xF0, 0xF1, 0xB3, 0x4C));
}

const std::string
    good_answer("\x12\x34\x56\x78\x00\x00\x14\x21\x00\x00\x00\x05\x00\x00\x00\x02\xDE\xAD\xBE\xEF", 20);

bool accepted(const std::string& octets) {
    return net::is_discovery_answer(reinterpret_cast<const unsigned char*>(octets.data()), octets.size());
}

TEST(DiscoveryAnswer, NeedsSixteenOctets) {
    for (std::size_t length = 0; length < 16; ++length)
        EXPECT_FALSE(accepted(good_answer.substr(0, length))) << length;
    EXPECT_TRUE(accepted(good_answer.substr(0, 16)));
}

TEST(DiscoveryAnswer, NeedsThreeOfItsWordsExactly) {
    for (std::size_t at = 0; at < good_answer.size(); ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            std::string changed = good_answer;
            changed[at] = static_cast<char>(changed[at] ^ (1 << bit));
            const bool examined = at < 4 || (at >= 8 && at < 16);
            EXPECT_EQ(accepted(changed), !examined) << "bit " << bit << " of octet " << at;
        }
    }
}

TEST(FoundServers, AreJoinedInTheirOrder) {
    EXPECT_EQ(join_found_servers("10.0.0.2\0"
                                 "10.0.0.9\0"),
              "10.0.0.2,10.0.0.9");
    EXPECT_EQ(join_found_servers("10.0.0.9\0"
                                 "10.0.0.2\0"
                                 "10.0.0.9\0"),
              "10.0.0.9,10.0.0.2,10.0.0.9");
    EXPECT_EQ(join_found_servers("127.0.0.1\0"), "127.0.0.1");
    EXPECT_EQ(join_found_servers(""), "");
}

} // namespace
