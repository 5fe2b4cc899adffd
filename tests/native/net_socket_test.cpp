#include "error/messages.h"
#include "net/socket.h"
#include "platform/substitute/control.h"
#include "support/loopback.h"

#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::StrEq;

std::string said(const std::string& before, DWORD code) {
    return before + system_error_string(code) + " (" + std::to_string(code) + ")";
}

class FailingSockets : public testing::Test {
protected:
    FailingSockets() { substitute::reset(); }
    void TearDown() override {
        socket_io_timeout = 600;
        EXPECT_EQ(substitute::open_sockets(), 0U) << "a socket was left open";
        substitute::reset();
        net_started = false;
    }

    const char* connect_to(std::uint16_t port, unsigned flags = connect_nonblocking) {
        return socket_connect(loopback::address(), port, &socket_, flags);
    }
    /// Connects to a peer of this test's.
    void connect_to_listener() {
        ASSERT_EQ(connect_to(listener_.port()), nullptr);
        waited_ = substitute::select_waits().size();
    }
    /// The waits since then.
    std::vector<int> waits() const {
        const std::vector<int> all = substitute::select_waits();
        return {all.begin() + static_cast<std::ptrdiff_t>(waited_), all.end()};
    }
    void close() {
        EXPECT_EQ(socket_close(socket_), nullptr);
        listener_.close();
    }
    const char* receive() {
        char octet = 0;
        std::size_t received = 0;
        return socket_recv(socket_, &octet, 1, &received);
    }

    loopback::Listener listener_;
    Socket socket_;
    std::size_t waited_ = 0;
};

/// Those that only look at failures of a connect, which must leave no socket.
class FailingConnect : public FailingSockets {
protected:
    void TearDown() override {
        listener_.close();
        EXPECT_EQ(socket_.handle, INVALID_SOCKET);
        FailingSockets::TearDown();
    }
    /// Every connect here is one that goes on in the background.
    const char* pending_connect() {
        substitute::fail_call("connect", 1, 10035);
        return connect_to(listener_.port());
    }
};

TEST_F(FailingConnect, ReportsAFailedStart) {
    substitute::fail_call("WSAStartup", 1, 10091);
    net_started = false;
    EXPECT_EQ(net_startup(), said("Error with wsastartup: ", 10091) + "\n");
    EXPECT_FALSE(net_started);
}

TEST_F(FailingConnect, StartsTheSystemsSocketsOnce) {
    net_started = false;
    substitute::fail_call("WSAStartup");
    EXPECT_NE(net_startup(), nullptr);
    EXPECT_EQ(net_startup(), nullptr);
    EXPECT_EQ(net_startup(), nullptr);
    EXPECT_EQ(substitute::call_count("WSAStartup"), 2);
}

TEST_F(FailingConnect, LooksUpNoDottedAddress) {
    std::uint32_t address = 0;
    EXPECT_EQ(resolve_host("10.1.2.3", &address), nullptr);
    EXPECT_EQ(substitute::call_count("gethostbyname"), 0);
}

TEST_F(FailingConnect, LooksUpTheAddressOfAllOnes) {
    substitute::set_host("255.255.255.255", {htonl(0x0A000001)});
    std::uint32_t address = 0;
    EXPECT_EQ(resolve_host("255.255.255.255", &address), nullptr);
    EXPECT_EQ(address, htonl(0x0A000001));
    EXPECT_EQ(substitute::call_count("gethostbyname"), 1);
}

TEST_F(FailingConnect, TakesTheFirstOfSeveralAddresses) {
    substitute::set_host("server.example", {htonl(0x0A000002), htonl(0x0A000001)});
    std::uint32_t address = 0;
    EXPECT_EQ(resolve_host("server.example", &address), nullptr);
    EXPECT_EQ(address, htonl(0x0A000002));
}

TEST_F(FailingConnect, ReportsAFailedLookUp) {
    substitute::fail_call("gethostbyname", 1, 11001);
    std::uint32_t address = 0;
    EXPECT_EQ(resolve_host("nobody.example", &address),
              "Error resolving \"nobody.example\": " + system_error_string(11001));
}

TEST_F(FailingConnect, ReportsAHostWithoutAddresses) {
    substitute::set_host("bare.example", {});
    std::uint32_t address = 0;
    EXPECT_THAT(resolve_host("bare.example", &address),
                StrEq("No addresses found when resolving \"bare.example\""));
}

TEST_F(FailingConnect, ReportsThatThereIsNoSocket) {
    substitute::fail_call("socket", 1, 10024);
    EXPECT_EQ(connect_to(listener_.port()), said("Error creating socket: ", 10024));
}

TEST_F(FailingConnect, ReportsASocketThatStaysBlocking) {
    substitute::fail_call("ioctlsocket", 1, 10038);
    EXPECT_EQ(connect_to(listener_.port()), said("Error setting socket to nonblocking: ", 10038));
}

TEST_F(FailingConnect, ReportsThatNaglesAlgorithmCannotBeSet) {
    substitute::fail_call("setsockopt", 1, 10042);
    EXPECT_EQ(connect_to(listener_.port()), said("Error disabling Nagle: ", 10042));
}

TEST_F(FailingConnect, ReportsAConnectThatFailsAtOnce) {
    substitute::fail_call("connect", 1, 10061);
    EXPECT_EQ(connect_to(listener_.port()), said("Error connecting: ", 10061));
    EXPECT_EQ(substitute::call_count("select"), 0);
}

TEST_F(FailingConnect, GivesUpAfterTenMinutes) {
    substitute::time_out_select();
    EXPECT_THAT(pending_connect(), StrEq("Connection timed out"));
    EXPECT_THAT(substitute::select_waits(), ElementsAre(600));
}

TEST_F(FailingConnect, WaitsTenMinutesWhateverTheOtherTimeOutSays) {
    socket_io_timeout = 5;
    substitute::time_out_select();
    EXPECT_THAT(pending_connect(), StrEq("Connection timed out"));
    EXPECT_THAT(substitute::select_waits(), ElementsAre(600));
}

TEST_F(FailingConnect, ReportsAFailedWait) {
    substitute::fail_call("select");
    EXPECT_THAT(pending_connect(), StrEq("Error connecting: Select returned: -1"));
}

TEST_F(FailingConnect, ReportsAWaitThatCountsMoreThanOneSocket) {
    substitute::answer_call("select", 1, 2);
    EXPECT_THAT(pending_connect(), StrEq("Error connecting: Select returned: 2"));
}

TEST_F(FailingConnect, ReportsAWaitThatNamesNoSocket) {
    substitute::answer_call("select", 1, 1);
    EXPECT_THAT(pending_connect(), StrEq("Error connecting: Select returned, but socket isn't present"));
}

TEST_F(FailingConnect, ReportsWhyAPendingConnectFailed) {
    substitute::except_select();
    substitute::set_socket_error(10060);
    EXPECT_EQ(pending_connect(), said("Error connecting: ", 10060));
}

TEST_F(FailingConnect, ReportsThatTheReasonCannotBeRead) {
    substitute::except_select();
    substitute::fail_call("getsockopt", 1, 10042);
    EXPECT_EQ(pending_connect(), said("Error retrieving connection status: ", 10042));
}

/// True once the system waits for the answer to a connect to `port`.
bool connecting(std::uint16_t port) {
    char wanted[32];
    std::snprintf(wanted, sizeof wanted, "0100007F:%04X 02 ", port);
    std::ifstream table("/proc/net/tcp");
    for (std::string line; std::getline(table, line);) {
        if (line.find(wanted) != std::string::npos)
            return true;
    }
    return false;
}

TEST_F(FailingConnect, ReportsARefusalThatComesLate) {
    // A full queue leaves connects unanswered; once nobody listens any more, the next try is refused.
    loopback::Listener full(0);
    const auto port = full.port();
    ASSERT_EQ(connect_to(port), nullptr);
    Socket queued = socket_;
    std::thread closer([&full, port] {
        while (!connecting(port))
            std::this_thread::yield();
        full.close();
    });
    EXPECT_EQ(connect_to(port), said("Error connecting: ", 10061));
    closer.join();
    EXPECT_EQ(socket_close(queued), nullptr);
}

TEST_F(FailingSockets, ReportsAFailedSend) {
    connect_to_listener();
    substitute::fail_call("send", 1, 10054);
    EXPECT_EQ(socket_send(socket_, "a", 1),
              said("Bad error without sleep happened in socket_send(): ", 10054));
    EXPECT_EQ(substitute::open_sockets(), 1U);
    close();
}

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
    // As if the first three octets were gone.
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
    // The host raises SIGPIPE now unless it is told not to.
    EXPECT_EQ(socket_send(socket_, "a", 1),
              said("Bad error without sleep happened in socket_send(): ", 10053));
    close();
}

TEST_F(FailingSockets, ReportsAFailedReceive) {
    connect_to_listener();
    substitute::fail_call("recv", 1, 10057);
    EXPECT_EQ(receive(), said("Bad error happened without sleep in socket_recv(): ", 10057));
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
