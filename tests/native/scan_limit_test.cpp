// How long a pass of the scan goes on while answers come; no test here changes the limit.
#include "net/discovery.h"
#include "platform/substitute/control.h"
#include "support/discovery_server.h"
#include "support/scan_result.h"

#include <gmock/gmock.h>

namespace {

using loopback::Answer;
using loopback::discovery_answer;
using loopback::DiscoveryServer;
using testing::ElementsAre;
using testing::IsEmpty;

/// The first pass hears one server. Its answer is there when the given time of the pass has gone by; at the
/// next look every pass is over.
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

TEST_F(ScanLimit, IsNotReachedInTheLastMillisecondOfAMinute) {
    EXPECT_THAT(servers_found_after(59'999), ElementsAre("127.0.0.2"));
}

TEST_F(ScanLimit, IsAMinute) { EXPECT_THAT(servers_found_after(60'000), IsEmpty()); }

} // namespace
