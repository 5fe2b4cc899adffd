#include "support/substitute/failing_sockets.h"

#include <fcntl.h>
#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::StrEq;

TEST_F(FailingSockets, SendsAgainAfterAWait) {
    connect_to_listener();
    substitute::fail_call("send", 1, 10035);
    EXPECT_EQ(socket_send(socket_, "a", 1), nullptr);
    EXPECT_EQ(substitute::call_count("send"), 2);
    EXPECT_THAT(waits(), ElementsAre(600));
    close();
}

TEST_F(FailingSockets, WaitsTenMinutesToSend) {
    connect_to_listener();
    substitute::fail_call("send", 1, 10035);
    substitute::time_out_select();
    EXPECT_THAT(socket_send(socket_, "a", 1), StrEq("Timeout in socket_send()"));
    EXPECT_THAT(waits(), ElementsAre(600));
    close();
}

TEST_F(FailingSockets, ReportsAFailedWaitToSend) {
    connect_to_listener();
    substitute::fail_call("send", 1, 10035);
    substitute::fail_call("select", 1, 10050);
    EXPECT_EQ(socket_send(socket_, "a", 1), said("Bad error after sleep happened in socket_send(): ", 10050));
    close();
}

TEST_F(FailingSockets, ReportsAWaitToSendThatCountsTwoSockets) {
    connect_to_listener();
    substitute::fail_call("send", 1, 10035);
    substitute::answer_call("select", 1, 2);
    EXPECT_EQ(socket_send(socket_, "a", 1), said("Bad error after sleep happened in socket_send(): ", 10035));
    close();
}

TEST_F(FailingSockets, SendsWhatIsLeftAfterAPart) {
    connect_to_listener();
    // As if the first three octets had been lost.
    substitute::answer_call("send", 1, 3);
    EXPECT_EQ(socket_send(socket_, "abcdef", 6), nullptr);
    loopback::Handle connection = listener_.accept();
    EXPECT_EQ(loopback::receive(connection.get(), 3), "def");
    connection.close();
    close();
}

TEST_F(FailingSockets, ReportsThatTooMuchWasSent) {
    connect_to_listener();
    substitute::answer_call("send", 1, 2);
    EXPECT_THAT(socket_send(socket_, "a", 1), StrEq("send() sent too much - this is a Winsock error"));
    close();
}

TEST_F(FailingSockets, SurvivesSendingToAPeerThatIsGone) {
    connect_to_listener();
    loopback::Handle connection = listener_.accept();
    loopback::reset(connection);
    const char* message = nullptr;
    while (message == nullptr)
        message = socket_send(socket_, "a", 1);
    EXPECT_EQ(message, said("Bad error without sleep happened in socket_send(): ", 10054));
    // The host now raises SIGPIPE unless this is disabled.
    EXPECT_EQ(socket_send(socket_, "a", 1),
              said("Bad error without sleep happened in socket_send(): ", 10053));
    close();
}

TEST_F(FailingSockets, ReportsAResetWhileReceiving) {
    connect_to_listener();
    loopback::Handle connection = listener_.accept();
    loopback::reset(connection);
    EXPECT_EQ(receive(), said("Bad error happened without sleep in socket_recv(): ", 10054));
    close();
}

TEST_F(FailingSockets, ReportsAResetInTheWaitToReceive) {
    connect_to_listener();
    loopback::Handle connection = listener_.accept();
    loopback::reset(connection);
    substitute::fail_call("recv", 1, 10035);
    EXPECT_EQ(receive(), said("Bad error happened without sleep in socket_recv(): ", 10054));
    close();
}

TEST_F(FailingSockets, WaitsTenMinutesToReceive) {
    connect_to_listener();
    substitute::time_out_select();
    EXPECT_THAT(receive(), StrEq("Timeout in socket_recv()"));
    EXPECT_THAT(waits(), ElementsAre(600));
    close();
}

TEST_F(FailingSockets, ReportsAFailedWaitToReceive) {
    connect_to_listener();
    substitute::fail_call("select", 1, 10050);
    EXPECT_EQ(receive(), said("Bad error happened in socket_recv(): ", 10050));
    close();
}

TEST_F(FailingSockets, ReportsAWaitToReceiveThatCountsTwoSockets) {
    connect_to_listener();
    substitute::answer_call("select", 1, 2);
    EXPECT_EQ(receive(), said("Bad error happened in socket_recv(): ", 10035));
    close();
}

TEST_F(FailingSockets, WaitsForTheGivenSecondsAndTakesOnlyOneForReadable) {
    connect_to_listener();
    substitute::time_out_select();
    EXPECT_FALSE(socket_wait_readable(socket_, 7));
    EXPECT_THAT(waits(), ElementsAre(7));
    substitute::answer_call("select", 1, 2);
    EXPECT_FALSE(socket_wait_readable(socket_, 0));
    substitute::answer_call("select", 1, 1);
    EXPECT_TRUE(socket_wait_readable(socket_, 0));
    close();
}

TEST_F(FailingSockets, LeavesTheSocketOpenThatCannotBlockAgain) {
    connect_to_listener();
    substitute::fail_call("ioctlsocket", 1, 10038);
    EXPECT_EQ(socket_close(socket_), said("socket_close: Error at ioctlsocket: ", 10038));
    EXPECT_EQ(substitute::open_sockets(), 1U);
    EXPECT_EQ(substitute::call_count("shutdown"), 0);
    EXPECT_EQ(substitute::call_count("closesocket"), 0);
    close();
}

TEST_F(FailingSockets, ClosesEvenWhenTheShutdownFails) {
    connect_to_listener();
    substitute::fail_call("shutdown");
    close();
}

TEST_F(FailingSockets, ReportsAFailedClose) {
    connect_to_listener();
    substitute::fail_call("closesocket", 1, 10004);
    EXPECT_EQ(socket_close(socket_), said("Error closing socket: ", 10004));
    EXPECT_EQ(substitute::open_sockets(), 1U);
    close();
}

TEST_F(FailingSockets, BlocksAgainBeforeItCloses) {
    connect_to_listener();
    // A second descriptor of the same socket outlives the close and shows the mode.
    const int twin = ::dup(static_cast<int>(socket_.handle));
    EXPECT_NE(::fcntl(twin, F_GETFL) & O_NONBLOCK, 0);
    close();
    EXPECT_EQ(::fcntl(twin, F_GETFL) & O_NONBLOCK, 0);
    ::close(twin);
}

TEST_F(FailingSockets, BlocksWithoutTheFlag) {
    ASSERT_EQ(connect_to(listener_.port(), 0), nullptr);
    EXPECT_EQ(::fcntl(static_cast<int>(socket_.handle), F_GETFL) & O_NONBLOCK, 0);
    close();
}

TEST_F(FailingSockets, HasNoLocalAddressWhenTheSystemDoesNotTell) {
    connect_to_listener();
    substitute::fail_call("getsockname");
    std::uint32_t address = 4711;
    std::uint16_t port = 4711;
    EXPECT_FALSE(socket_local_address(socket_, &address, &port));
    EXPECT_EQ(address, 4711U);
    EXPECT_EQ(port, 4711U);
    close();
}

} // namespace
