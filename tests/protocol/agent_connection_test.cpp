#include "protocol/negotiation.h"

#include "net/memory.h"
#include "net/socket.h"
#include "support/conversation.h"
#include "support/loopback.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace {

using loopback::Handle;
using testing::AllOf;
using testing::EndsWith;
using testing::IsNull;
using testing::StartsWith;
using testing::StrEq;

class AgentConnection : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(net_startup(), nullptr);
        socket_io_timeout = 20;
    }
    void TearDown() override {
        socket_io_timeout = 600;
        net::resize_memory = std::realloc;
        std::free(used_name);
    }
    /// Connects to a server that accepts every agent and stays until the agent closes.
    const char* connect_as(const char* name, const char* domain) {
        loopback::Peer server([this](Handle& agent) {
            loopback::send_all(agent.get(), text_of(conversation::offer));
            heard = loopback::receive_all(agent.get());
        });
        return connect_and_negotiate("127.0.0.1", server.port(), name, domain, &used_name, &status);
    }

    std::string heard;
    char* used_name = nullptr;
    int status = 77;
};

TEST_F(AgentConnection, SendsNameAndDomainAndCloses) {
    EXPECT_THAT(connect_as("web1", "b.example"), IsNull());
    EXPECT_EQ(status, 0);
    EXPECT_THAT(used_name, IsNull());
    EXPECT_EQ(heard,
              text_of("60 80 02 02 02 02 A1 80 04 04 77 65 62 31 04 09 62 2E 65 78 61 6D 70 6C 65 04 00 "
                      "01 01 01 01 01 01 01 01 01 00 00 00 00 62 80 00 00"_octets));
}

TEST_F(AgentConnection, UsesTheLocalAddressForAnEmptyName) {
    for (const char* name : {static_cast<const char*>(nullptr), ""}) {
        EXPECT_THAT(connect_as(name, nullptr), IsNull());
        EXPECT_EQ(status, 0);
        EXPECT_THAT(used_name, StrEq("127.0.0.1"));
        EXPECT_EQ(heard, text_of("60 80 02 02 02 02 A1 80 04 09 31 32 37 2E 30 2E 30 2E 31 04 00 04 00 "
                                 "01 01 01 01 01 01 01 01 01 00 00 00 00 62 80 00 00"_octets));
        std::free(used_name);
        used_name = nullptr;
    }
}

TEST_F(AgentConnection, NeedsNoOutputs) {
    loopback::Peer server([](Handle& agent) {
        loopback::send_all(agent.get(), text_of(conversation::offer));
        loopback::receive_all(agent.get());
    });
    EXPECT_THAT(connect_and_negotiate("127.0.0.1", server.port(), "", "", nullptr, nullptr), IsNull());
}

TEST_F(AgentConnection, ClosesAfterARefusal) {
    loopback::Peer server([this](Handle& agent) {
        loopback::send_all(agent.get(), text_of(conversation::refusal));
        heard = loopback::receive_all(agent.get());
    });
    EXPECT_THAT(connect_and_negotiate("127.0.0.1", server.port(), "a", "", &used_name, &status),
                StrEq("Tavrin Server rejected us: no"));
    server.finish();
    EXPECT_EQ(status, 1);
    EXPECT_THAT(used_name, IsNull());
    EXPECT_EQ(heard, text_of("60 80 02 02 02 02 A1 80 04 01 61 04 00 04 00 "
                             "01 01 01 01 01 01 01 01 01 00 00 00 00"_octets));
}

TEST_F(AgentConnection, ClosesAfterATextThatIsTooLong) {
    EXPECT_THAT(connect_as(std::string(257, 'n').c_str(), ""),
                StrEq("client_private_key.name: data out of range in write_string"));
    EXPECT_EQ(status, 2);
    EXPECT_EQ(heard, text_of("60 80 02 02 02 02 A1 80 04"_octets));
}

TEST_F(AgentConnection, HandsOnWhyItCouldNotConnect) {
    used_name = nullptr;
    EXPECT_THAT(connect_and_negotiate("127.0.0.1", loopback::closed_port(), "", "", &used_name, &status),
                AllOf(StartsWith("Error connecting: "), EndsWith(" (10061)")));
    EXPECT_EQ(status, 2);
    EXPECT_THAT(used_name, IsNull());
}

TEST_F(AgentConnection, NeedsMemoryForItsStream) {
    net::resize_memory = [](void*, std::size_t) -> void* { return nullptr; };
    EXPECT_THAT(connect_and_negotiate("127.0.0.1", loopback::closed_port(), "a", "", nullptr, &status),
                StrEq("Error allocating memory"));
    EXPECT_EQ(status, 2);
}

} // namespace
