// A scan's result that fills its memory to the last octet.
#include "net/discovery.h"
#include "support/discovery_server.h"
#include "support/short_memory.h"

#include <gmock/gmock.h>

namespace {

using loopback::Answer;
using loopback::discovery_answer;
using loopback::DiscoveryServer;
using testing::ElementsAre;
using testing::StrEq;

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
    EXPECT_THAT(net::scan_networks(network, server.port(), &found), StrEq("Out of memory"));
    EXPECT_EQ(found, nullptr);
    EXPECT_THAT(memory.sizes(), ElementsAre(64, 65));
}

} // namespace
