// Sockets whose calls fail, one at a time, towards a peer of the test's own.
#include "net/socket.h"

#include "base/messages.h"
#include "substitute/control.h"
#include "support/loopback.h"

#include <fcntl.h>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <string>
#include <thread>
#include <vector>

namespace {

using substitute::answer_call;
using substitute::fail_call;
using testing::ElementsAre;
using testing::StrEq;

/// What the program has when no test has changed it yet.
const int shipped_io_timeout = socket_io_timeout;

/// What the socket layer says about a failure: what it did, the system's words and the number.
std::string said(const std::string& before, DWORD code) {
    return before + system_error_string(code) + " (" + std::to_string(code) + ")";
}

/// How a call is made to fail, and what is said then.
struct Failure {
    std::function<void()> plan;
    std::string text;
};

class SocketFailures : public testing::Test {
protected:
    SocketFailures() { substitute::reset(); }
    void TearDown() override {
        socket_io_timeout = shipped_io_timeout;
        listener_.close();
        EXPECT_EQ(substitute::open_sockets(), 0U) << "a socket was left open";
        substitute::reset();
        net::started = false;
    }

    std::string connect_to(std::uint16_t port, unsigned flags = net::connect_nonblocking) {
        const char* const problem = socket_connect(loopback::address(), port, &socket_, flags);
        return problem != nullptr ? problem : "connected";
    }
    std::string resolve(const char* name) {
        const char* const problem = resolve_host(name, &address_);
        return problem != nullptr ? problem : "resolved";
    }

    loopback::Listener listener_;
    Socket socket_;
    std::uint32_t address_ = 0;
};

TEST_F(SocketFailures, OfTheStartAreReportedAndItIsTriedAgainAndMadeOnce) {
    net::started = false;
    fail_call("WSAStartup", 1, 10091);
    EXPECT_EQ(net_startup(), said("Error with wsastartup: ", 10091) + "\n");
    fail_call("WSAStartup", 1, 10091);
    EXPECT_EQ(start_sockets(),
              "Error initializing socket subsystem: " + said("Error with wsastartup: ", 10091) + "\n");
    EXPECT_FALSE(net::started);
    EXPECT_EQ(net_startup(), nullptr);
    EXPECT_EQ(start_sockets(), "");
    EXPECT_EQ(substitute::call_count("WSAStartup"), 3);
}

TEST_F(SocketFailures, LooksUpNamesAndTheAddressOfAllOnesAndNoOther) {
    EXPECT_EQ(resolve("10.1.2.3"), "resolved");
    EXPECT_EQ(substitute::call_count("gethostbyname"), 0);
    substitute::set_host("255.255.255.255", {htonl(0x0A000001)});
    EXPECT_EQ(resolve("255.255.255.255"), "resolved");
    EXPECT_EQ(address_, htonl(0x0A000001));
    substitute::set_host("server.example", {htonl(0x0A000002), htonl(0x0A000001)});
    EXPECT_EQ(resolve("server.example"), "resolved");
    EXPECT_EQ(address_, htonl(0x0A000002)) << "the first of several";
    substitute::set_host("bare.example", {});
    EXPECT_EQ(resolve("bare.example"), "No addresses found when resolving \"bare.example\"");
    fail_call("gethostbyname", 1, 11001);
    EXPECT_EQ(resolve("nobody.example"), "Error resolving \"nobody.example\": " + system_error_string(11001));
}

/// A connect that goes on in the background.
void pend() { fail_call("connect", 1, 10035); }

TEST_F(SocketFailures, OfAConnectAreReportedAndLeaveNoSocket) {
    const Failure failures[] = {
        {[] { fail_call("socket", 1, 10024); }, said("Error creating socket: ", 10024)},
        {[] { fail_call("ioctlsocket", 1, 10038); }, said("Error setting socket to nonblocking: ", 10038)},
        {[] { fail_call("setsockopt", 1, 10042); }, said("Error disabling Nagle: ", 10042)},
        {[] { fail_call("connect", 1, 10061); }, said("Error connecting: ", 10061)},
        {[] { pend(), fail_call("select"); }, "Error connecting: Select returned: -1"},
        {[] { pend(), answer_call("select", 1, 2); }, "Error connecting: Select returned: 2"},
        {[] { pend(), answer_call("select", 1, 1); },
         "Error connecting: Select returned, but socket isn't present"},
        {[] { pend(), substitute::except_select(), substitute::set_socket_error(10060); },
         said("Error connecting: ", 10060)},
        {[] { pend(), substitute::except_select(), fail_call("getsockopt", 1, 10042); },
         said("Error retrieving connection status: ", 10042)},
    };
    for (const Failure& each : failures) {
        substitute::reset();
        each.plan();
        EXPECT_EQ(connect_to(listener_.port()), each.text);
        EXPECT_EQ(socket_.handle, INVALID_SOCKET) << each.text;
        EXPECT_EQ(substitute::open_sockets(), 0U) << each.text;
    }
}

TEST_F(SocketFailures, WaitTenMinutesForAConnectWhateverTheOtherTimeOutSays) {
    socket_io_timeout = 5;
    pend();
    substitute::time_out_select();
    EXPECT_EQ(connect_to(listener_.port()), "Connection timed out");
    EXPECT_THAT(substitute::select_waits(), ElementsAre(600));
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

TEST_F(SocketFailures, OfAConnectAreReportedWhenTheyComeLate) {
    // A full queue leaves connects unanswered; once nobody listens any more, the next try is refused.
    loopback::Listener full(0);
    const auto port = full.port();
    ASSERT_EQ(connect_to(port), "connected");
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

/// With a connection to a peer of this test's.
class Connected : public SocketFailures {
protected:
    void SetUp() override {
        ASSERT_EQ(connect_to(listener_.port()), "connected");
        waited_ = substitute::select_waits().size();
    }
    void TearDown() override {
        EXPECT_EQ(socket_close(socket_), nullptr);
        SocketFailures::TearDown();
    }
    /// The waits since the connect.
    std::vector<int> waits() const {
        const std::vector<int> all = substitute::select_waits();
        return {all.begin() + static_cast<std::ptrdiff_t>(waited_), all.end()};
    }
    std::string send_one() {
        const char* const problem = socket_send(socket_, "a", 1);
        return problem != nullptr ? problem : "sent";
    }
    std::string receive_one() {
        char octet = 0;
        std::size_t received = 0;
        const char* const problem = socket_recv(socket_, &octet, 1, &received);
        return problem != nullptr ? problem : "received";
    }

    std::size_t waited_ = 0;
};

TEST_F(Connected, SendsAgainAfterAWait) {
    fail_call("send", 1, 10035);
    EXPECT_EQ(send_one(), "sent");
    EXPECT_EQ(substitute::call_count("send"), 2);
    EXPECT_THAT(waits(), ElementsAre(600));
}

TEST_F(Connected, WaitsTenMinutesToSendAndToReceive) {
    fail_call("send", 1, 10035);
    substitute::time_out_select();
    EXPECT_EQ(send_one(), "Timeout in socket_send()");
    substitute::time_out_select();
    EXPECT_EQ(receive_one(), "Timeout in socket_recv()");
    EXPECT_THAT(waits(), ElementsAre(600, 600));
}

TEST_F(Connected, ReportsWhatFailsInSending) {
    const auto block = [] { fail_call("send", 1, 10035); };
    const std::string after_sleep = "Bad error after sleep happened in socket_send(): ";
    const Failure failures[] = {
        {[&] { block(), fail_call("select", 1, 10050); }, said(after_sleep, 10050)},
        {[&] { block(), answer_call("select", 1, 2); }, said(after_sleep, 10035)},
        {[] { answer_call("send", 1, 2); }, "send() sent too much - this is a Winsock error"},
    };
    for (const Failure& each : failures) {
        each.plan();
        EXPECT_EQ(send_one(), each.text);
    }
}

TEST_F(Connected, ReportsWhatFailsInTheWaitToReceive) {
    fail_call("select", 1, 10050);
    EXPECT_EQ(receive_one(), said("Bad error happened in socket_recv(): ", 10050));
    answer_call("select", 1, 2);
    EXPECT_EQ(receive_one(), said("Bad error happened in socket_recv(): ", 10035));
}

TEST_F(Connected, SendsWhatIsLeftAfterAPart) {
    answer_call("send", 1, 3); // as if the first three octets were gone
    EXPECT_EQ(socket_send(socket_, "abcdef", 6), nullptr);
    const loopback::Handle connection = listener_.accept();
    EXPECT_EQ(loopback::receive(connection.get(), 3), "def");
}

TEST_F(Connected, SurvivesSendingToAPeerThatIsGone) {
    loopback::Handle connection = listener_.accept();
    loopback::reset(connection);
    std::string said_last = "sent";
    while (said_last == "sent")
        said_last = send_one();
    EXPECT_EQ(said_last, said("Bad error without sleep happened in socket_send(): ", 10054));
    // The host raises SIGPIPE now unless it is told not to.
    EXPECT_EQ(send_one(), said("Bad error without sleep happened in socket_send(): ", 10053));
}

TEST_F(Connected, ReportsAResetWhileReceiving) {
    loopback::Handle connection = listener_.accept();
    loopback::reset(connection);
    EXPECT_EQ(receive_one(), said("Bad error happened without sleep in socket_recv(): ", 10054));
}

TEST_F(Connected, ReportsAResetInTheWaitToReceive) {
    loopback::Handle connection = listener_.accept();
    loopback::reset(connection);
    fail_call("recv", 1, 10035);
    EXPECT_EQ(receive_one(), said("Bad error happened without sleep in socket_recv(): ", 10054));
}

TEST_F(Connected, WaitsForTheGivenSecondsAndTakesOnlyOneForReadable) {
    substitute::time_out_select();
    EXPECT_FALSE(socket_wait_readable(socket_, 7));
    EXPECT_THAT(waits(), ElementsAre(7));
    answer_call("select", 1, 2);
    EXPECT_FALSE(socket_wait_readable(socket_, 0));
    answer_call("select", 1, 1);
    EXPECT_TRUE(socket_wait_readable(socket_, 0));
}

TEST_F(Connected, StaysOpenWhenItCannotBlockAgainOrNotClose) {
    fail_call("ioctlsocket", 1, 10038);
    EXPECT_EQ(socket_close(socket_), said("socket_close: Error at ioctlsocket: ", 10038));
    EXPECT_EQ(substitute::call_count("shutdown") + substitute::call_count("closesocket"), 0);
    fail_call("closesocket", 1, 10004);
    EXPECT_EQ(socket_close(socket_), said("Error closing socket: ", 10004));
    EXPECT_EQ(substitute::open_sockets(), 1U);
}

TEST_F(Connected, ClosesEvenWhenTheShutdownFails) { fail_call("shutdown"); }

TEST_F(Connected, BlocksAgainBeforeItCloses) {
    // A second descriptor of the same socket outlives the close and shows the mode.
    const int twin = ::dup(static_cast<int>(socket_.handle));
    EXPECT_NE(::fcntl(twin, F_GETFL) & O_NONBLOCK, 0);
    EXPECT_EQ(socket_close(socket_), nullptr);
    EXPECT_EQ(::fcntl(twin, F_GETFL) & O_NONBLOCK, 0);
    ::close(twin);
    ASSERT_EQ(connect_to(listener_.port(), 0), "connected");
    EXPECT_EQ(::fcntl(static_cast<int>(socket_.handle), F_GETFL) & O_NONBLOCK, 0) << "without the flag";
}

TEST_F(Connected, HasNoLocalAddressWhenTheSystemDoesNotTell) {
    fail_call("getsockname");
    std::uint32_t address = 4711;
    std::uint16_t port = 4711;
    EXPECT_FALSE(socket_local_address(socket_, &address, &port));
    EXPECT_EQ(address, 4711U);
    EXPECT_EQ(port, 4711U);
}

} // namespace
