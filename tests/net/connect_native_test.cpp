#include "support/substitute/failing_sockets.h"

#include <fstream>
#include <gmock/gmock.h>
#include <string>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::StrEq;

/// Tests of failing connects, which must not leave a socket open.
class FailingConnect : public FailingSockets {
protected:
    void TearDown() override {
        listener_.close();
        EXPECT_EQ(socket_.handle, INVALID_SOCKET);
        FailingSockets::TearDown();
    }
    /// Every connect here continues in the background.
    const char* pending_connect() {
        substitute::fail_call("connect", 1, 10035);
        return connect_to(listener_.port());
    }
};

TEST_F(FailingConnect, ReportsAFailedStart) {
    substitute::fail_call("WSAStartup", 1, 10091);
    net::started = false;
    EXPECT_EQ(net_startup(), said("Error with wsastartup: ", 10091) + "\n");
    EXPECT_FALSE(net::started);
}

TEST_F(FailingConnect, StartsTheSystemsSocketsOnce) {
    net::started = false;
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
    // A full queue leaves connects unanswered; once the listener is closed, the next attempt is refused.
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

} // namespace
