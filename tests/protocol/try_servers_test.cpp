#include "protocol/try_servers.h"

#include "base/exceptions.h"
#include "net/socket.h"
#include "support/conversation.h"
#include "support/loopback.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// Records its calls.
struct Told : TrialListener {
    void trying(const std::string& host, std::uint16_t port) override {
        events.push_back("trying " + host + " at " + std::to_string(port));
    }
    void tried(const std::string& host, std::uint16_t port, const char* problem) override {
        events.push_back("tried " + host + " at " + std::to_string(port) + ": " +
                         (problem != nullptr ? problem : "accepted"));
    }
    bool bad_port(const ServerItem& item) override {
        events.push_back("bad port " + item.port_text.value_or("none") + " of " + item.host);
        return goes_on;
    }

    bool goes_on = false;
    std::vector<std::string> events;
};

class ServersTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(net_startup(), nullptr); }

    /// A server that answers and stays until the agent closes.
    static std::unique_ptr<loopback::Peer> server(const std::string& octets) {
        return std::make_unique<loopback::Peer>([octets](loopback::Handle& agent) {
            loopback::send_all(agent.get(), octets);
            loopback::receive_all(agent.get());
        });
    }
    bool test(const std::string& list, std::uint16_t default_port = 1) {
        told.events.clear();
        return try_servers(list, default_port, {.name = "web1", .domain = ""}, told);
    }

    Told told;
};

TEST_F(ServersTest, TellsBeforeAndAfterEachAttempt) {
    const auto alpha = server(text_of(conversation::offer));
    const auto beta = server(text_of(conversation::refusal));
    const std::string first = std::to_string(alpha->port());
    const std::string second = std::to_string(beta->port());
    EXPECT_TRUE(test(",127.0.0.1:" + first + ",,127.0.0.1,", beta->port()));
    EXPECT_THAT(told.events,
                ElementsAre("trying 127.0.0.1 at " + first, "tried 127.0.0.1 at " + first + ": accepted",
                            "trying 127.0.0.1 at " + second,
                            "tried 127.0.0.1 at " + second + ": Tavrin Server rejected us: no"));
}

TEST_F(ServersTest, HasNothingToTellOfNoServers) {
    EXPECT_TRUE(test(""));
    EXPECT_THAT(told.events, IsEmpty());
    EXPECT_TRUE(test(",,"));
    EXPECT_THAT(told.events, IsEmpty());
}

TEST_F(ServersTest, EndsAtABadPortWhenItsTurnComes) {
    EXPECT_FALSE(test("127.0.0.1:,b:x,c:80"));
    EXPECT_THAT(told.events,
                ElementsAre("trying 127.0.0.1 at 0", StartsWith("tried 127.0.0.1 at 0: Error connecting: "),
                            "bad port x of b"));
}

TEST(ServerPort, IsTheDefaultWithoutAColon) {
    EXPECT_EQ(server_port({"alpha", std::nullopt}, 5000), 5000);
    EXPECT_EQ(server_port({"alpha", std::nullopt}, 65535), 65535);
}

TEST(ServerPort, IsTheLowSixteenBitsOfItsText) {
    const std::pair<const char*, std::uint16_t> ports[] = {
        {"", 0},       {"0", 0},      {"80", 80},       {"+80", 80},  {" \t80", 80}, {"0080", 80},
        {"-1", 65535}, {"-2", 65534}, {"65535", 65535}, {"65536", 0}, {"65537", 1},  {"-65535", 1}};
    for (const auto& [text, port] : ports)
        EXPECT_EQ(server_port({"alpha", text}, 5000), port) << text;
}

TEST(ServerPort, ThrowsForATextThatIsNoNumber) {
    for (const char* text : {"x", "80x", "80 ", " ", "-", "0x50", "8.0", "80:90", "\xB2"})
        EXPECT_THROW(server_port({"alpha", text}, 5000), error::EParseError) << text;
}

} // namespace
