#include "net/discovery.h"

#include <gmock/gmock.h>
#include <string>

namespace {

using testing::ElementsAre;

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

TEST(DiscoveryAnswer, IsAccepted) { EXPECT_TRUE(accepted(good_answer)); }

TEST(DiscoveryAnswer, NeedsSixteenOctets) {
    for (std::size_t length = 0; length < 16; ++length)
        EXPECT_FALSE(accepted(good_answer.substr(0, length))) << length;
    EXPECT_TRUE(accepted(good_answer.substr(0, 16)));
}

TEST(DiscoveryAnswer, MayBeLong) { EXPECT_TRUE(accepted(good_answer + std::string(4076, '\xFF'))); }

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

TEST(DiscoveryAnswer, IsNoRequest) {
    const auto request = net::discovery_request();
    EXPECT_FALSE(net::is_discovery_answer(request.data(), request.size()));
}

} // namespace
