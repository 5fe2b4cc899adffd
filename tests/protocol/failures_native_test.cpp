#include "base/messages.h"
#include "protocol/negotiation.h"
#include "substitute/control.h"
#include "support/conversation.h"
#include "support/loopback.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace {

using loopback::Handle;
using testing::IsNull;
using testing::StrEq;

const std::string good_offer = text_of(conversation::offer);

std::string said(const std::string& before, DWORD code) {
    return before + system_error_string(code) + " (" + std::to_string(code) + ")";
}

/// A server that accepts every agent, while the agent's own system fails.
class ProtocolFailures : public testing::Test {
protected:
    ProtocolFailures() { substitute::reset(); }
    void TearDown() override { substitute::reset(); }

    std::string connect(const char* name = "web1", char** used_name = nullptr) {
        status = 77;
        loopback::Peer server([this](Handle& agent) {
            loopback::send_all(agent.get(), good_offer);
            heard = loopback::receive_all(agent.get());
        });
        const char* problem = connect_and_negotiate("127.0.0.1", server.port(), name, "", used_name, &status);
        return problem != nullptr ? problem : "accepted";
    }

    std::string heard;
    int status = 77;
};

TEST_F(ProtocolFailures, AcceptedLeavesNoSocketOpen) {
    EXPECT_EQ(connect(), "accepted");
    EXPECT_EQ(status, 0);
    EXPECT_EQ(substitute::open_sockets(), 0u);
}

TEST_F(ProtocolFailures, AFailingSendIsNamed) {
    const std::string send = said("socket_send returned error in socket_write_buf: "
                                  "Bad error without sleep happened in socket_send(): ",
                                  10054);
    for (const int message : {1, 2}) { // the request, the closing element
        substitute::fail_call("send", message, 10054);
        EXPECT_EQ(connect(), send) << message;
        EXPECT_EQ(status, 2);
        EXPECT_EQ(substitute::open_sockets(), 0u);
    }
    EXPECT_EQ(substitute::failed_calls(), 2);
}

TEST_F(ProtocolFailures, EveryReceiveNamesItsField) {
    const std::string receive =
        said("Error receiving data: Bad error happened without sleep in socket_recv(): ", 10054);
    const std::string version = "server_offers.version: ";
    const std::string master = "server_private_key.hasMasterKey: ";
    const std::string hallmark = "server_private_key.hasHallmark: ";
    const std::vector<std::string> fields = {"",       "",       version, version, version, version,
                                             "",       "",       master,  master,  master,  hallmark,
                                             hallmark, hallmark, "",      "",      "",      ""};
    ASSERT_EQ(fields.size(), good_offer.size());
    for (std::size_t sent = 0; sent < fields.size(); ++sent) {
        // A receive that would block is repeated any number of times, so the count of receives is certain
        // only if the peer has already answered.
        loopback::Listener listener;
        Stream* stream = nullptr;
        ASSERT_THAT(stream_open(&stream, loopback::address(), listener.port(), net::connect_nonblocking),
                    IsNull());
        const Handle agent = listener.accept();
        loopback::send_all(agent.get(), good_offer.substr(0, sent));
        ASSERT_EQ(stream->wait_readable(stream, sent > 0 ? 20 : 0), sent > 0);
        substitute::fail_call("recv", sent > 0 ? 2 : 1, 10054);
        EXPECT_EQ(negotiate(stream, "web1", "", &status), fields[sent] + receive) << sent;
        EXPECT_EQ(status, 2);
        stream->close(stream);
    }
    EXPECT_EQ(substitute::failed_calls(), static_cast<int>(fields.size()));
}

TEST_F(ProtocolFailures, AHandshakeTakesTwoSendsAndOneReceiveOfAnAnswerThatIsThere) {
    loopback::Listener listener;
    Stream* stream = nullptr;
    ASSERT_THAT(stream_open(&stream, loopback::address(), listener.port(), net::connect_nonblocking),
                IsNull());
    const Handle agent = listener.accept();
    loopback::send_all(agent.get(), good_offer);
    ASSERT_TRUE(stream->wait_readable(stream, 20));
    const int sends_of_the_peer = substitute::call_count("send");
    EXPECT_THAT(negotiate(stream, "web1", "", &status), IsNull());
    EXPECT_EQ(substitute::call_count("send"), sends_of_the_peer + 2);
    EXPECT_EQ(substitute::call_count("recv"), 1);
    stream->close(stream);
}

TEST_F(ProtocolFailures, AResetIsNamedWithItsNumber) {
    loopback::Peer server([](Handle& agent) {
        loopback::receive(agent.get(), 31);
        loopback::reset(agent);
    });
    EXPECT_EQ(connect_and_negotiate("127.0.0.1", server.port(), "web1", "", nullptr, &status),
              said("Error receiving data: Bad error happened without sleep in socket_recv(): ", 10054));
    EXPECT_EQ(status, 2);
}

TEST_F(ProtocolFailures, ALocalAddressThatCannotBeReadIsAnEmptyName) {
    substitute::fail_call("getsockname", 2); // the first is the server's
    char* used_name = nullptr;
    EXPECT_EQ(connect("", &used_name), "accepted");
    EXPECT_THAT(used_name, StrEq(""));
    std::free(used_name);
    EXPECT_EQ(heard, text_of("60 80 02 02 02 02 A1 80 04 00 04 00 04 00 "
                             "01 01 01 01 01 01 01 01 01 00 00 00 00 62 80 00 00"_octets));
}

TEST_F(ProtocolFailures, AFailingCloseChangesNothing) {
    substitute::fail_call("shutdown");
    EXPECT_EQ(connect(), "accepted");
    substitute::fail_call("closesocket");
    EXPECT_EQ(connect(), "accepted");
    EXPECT_EQ(substitute::failed_calls(), 2);
}

} // namespace
