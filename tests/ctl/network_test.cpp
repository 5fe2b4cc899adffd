// test and scan over the substitute, whose sockets are real: servers on the loopback network answer.
#include "ctl/program_run.h"

#include "ctl/exit_codes.h"
#include "net/socket.h"
#include "substitute/control.h"
#include "support/discovery_server.h"
#include "support/loopback.h"
#include "support/octets.h"

#include <gmock/gmock.h>

namespace {

using loopback::Answer;
using loopback::DiscoveryServer;
using testing::HasSubstr;

class Network : public Program {
protected:
    Network() {
        EXPECT_EQ(net_startup(), nullptr);
        set_text(key, "ServerList", "");
    }
    ~Network() override {
        socket_io_timeout = 600;
        net::connect_timeout = 600;
    }

    static std::unique_ptr<loopback::Peer> server(const std::string& octets) {
        return std::make_unique<loopback::Peer>([octets](loopback::Handle& agent) {
            loopback::send_all(agent.get(), octets);
            loopback::receive_all(agent.get());
        });
    }
    static std::string place(const loopback::Peer& peer) {
        return "127.0.0.1:" + std::to_string(peer.port());
    }

    const std::string accepting = text_of("61 80 02 02 02 05 A1 80 01 01 01 01 01 00 00 00 00 00"_octets);
    const std::string refusing = text_of("63 80 04 02 6E 6F 00 00"_octets);
};

TEST_F(Network, TellsWhoAcceptsAndWhoDoesNot) {
    const auto good = server(accepting);
    const auto bad = server(refusing);
    set_text(key, "ServerList", place(*good) + "," + place(*bad));
    const Ended done = run({"test", "Agent", "--timeout", "9"});
    EXPECT_EQ(done.code, ctl::no_server);
    EXPECT_EQ(done.out,
              place(*good) + "  accepted\n" + place(*bad) + "  failed: Tavrin Server rejected us: no\n");
    EXPECT_EQ(done.err, "");
    EXPECT_EQ(socket_io_timeout, 9);
    EXPECT_EQ(net::connect_timeout, 9);
}

TEST_F(Network, EverybodyAccepts) {
    const auto good = server(accepting);
    set_text(key, "ServerList", "127.0.0.1");
    set_text(key, "Port", std::to_string(good->port()));
    const Ended done = run({"test", "--json"});
    EXPECT_EQ(done.code, ctl::as_wished);
    EXPECT_EQ(done.out, "{\n  \"schema\": 1,\n  \"servers\": [\n    {\n      \"configuration\": \"Agent\",\n"
                        "      \"host\": \"127.0.0.1\",\n      \"port\": " +
                            std::to_string(good->port()) +
                            ",\n      \"accepted\": true,\n      \"reason\": null\n    }\n  ]\n}\n");
}

TEST_F(Network, AnEmptyListReachesNobody) {
    const Ended done = run({"test"});
    EXPECT_EQ(done.code, ctl::no_server);
    EXPECT_EQ(done.err, "tavrinctl: Agent: the server list is empty, so no server was reached\n");
}

TEST_F(Network, PortsThatAreNoNumbers) {
    set_text(key, "ServerList", "a:b");
    EXPECT_EQ(run({"test"}).err,
              "tavrinctl: The server port \"b\" for the server \"a\" cannot be parsed as a number.\n");
    set_text(key, "Port", "many");
    const Ended done = run({"test"});
    EXPECT_EQ(done.code, ctl::invalid);
    EXPECT_EQ(done.err, "tavrinctl: Error reading value: Error parsing: \"many\"\n");
    EXPECT_EQ(run({"scan"}).err, done.err);
}

TEST_F(Network, TitlesThatAreNotFound) {
    const std::string head = "SOFTWARE\\Tavrin\\Agent\nOther\n!G\n$A\nA\nH\nString\n$E\nE\nH\nSignalEvent\n";
    add_configuration("Other", head + "$T\n\nH\nConnectionTest\nA\nA\nNobody\nA\n");
    EXPECT_EQ(run({"test", "Other"}).err, "tavrinctl: Did not find anything with the title \"Nobody\"\n");
    add_configuration("Other", head + "$T\n\nH\nConnectionTest\nA\nA\nE\nA\n");
    const Ended done = run({"test", "Other"});
    EXPECT_EQ(done.code, ctl::invalid);
    EXPECT_EQ(done.err, "tavrinctl: Found title, but it is not a CommonRegKey\n");
}

TEST_F(Network, ConfigurationsWithoutATest) {
    add_configuration("Plain", "SOFTWARE\\Tavrin\\Agent\nPlain\n!G\n$A\nA\nH\nString\n");
    const Ended done = run({"test", "Plain"});
    EXPECT_EQ(done.code, ctl::invalid);
    EXPECT_EQ(done.err, "tavrinctl: no connection test is offered\n");
}

TEST_F(Network, AScanAsksAtTheConfiguredPort) {
    DiscoveryServer server(
        [](int) {
            return std::vector<Answer>{{1, loopback::discovery_answer()}};
        },
        DiscoveryServer::hears_broadcasts);
    set_text(key, "Port", std::to_string(server.port()));
    const Ended done = run({"scan"});
    EXPECT_EQ(done.code, ctl::as_wished);
    EXPECT_EQ(done.out, "127.0.0.1\n");
    const Ended named = run({"scan", "--json", "--port", std::to_string(server.port())});
    EXPECT_EQ(named.out, "{\n  \"schema\": 1,\n  \"port\": " + std::to_string(server.port()) +
                             ",\n  \"servers\": [\n    \"127.0.0.1\"\n  ]\n}\n");
}

TEST_F(Network, AScanWithoutAConfiguredPort) {
    delete_value("SOFTWARE\\Tavrin\\TRConfig", "Agent");
    const Ended done = run({"scan"});
    EXPECT_EQ(done.code, ctl::usage);
    EXPECT_EQ(done.err, "tavrinctl: no configuration tells the port; name it with --port\n");
}

TEST_F(Network, AScanThatNobodyAnswers) {
    DiscoveryServer server([](int) { return std::vector<Answer>{}; });
    const std::string port = std::to_string(server.port());
    const Ended done = run({"scan", "--port", port});
    EXPECT_EQ(done.code, ctl::as_wished);
    EXPECT_EQ(done.out, "no Tavrin Server answered at port " + port + "\n");
    EXPECT_EQ(done.err, "");
}

TEST_F(Network, WithoutSocketsThereIsNeither) {
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"test"}, {"scan", "--port", "1"}}) {
        net::started = false;
        substitute::fail_call("WSAStartup", 1, 10091);
        const Ended done = run(words);
        EXPECT_EQ(done.code, ctl::failed);
        EXPECT_THAT(done.err, HasSubstr("Error initializing socket subsystem: "));
    }
}

TEST_F(Network, AScanThatFails) {
    substitute::fail_call("socket", 1, 10055);
    const Ended done = run({"scan", "--port", "1"});
    EXPECT_EQ(done.code, ctl::failed);
    EXPECT_THAT(done.err, HasSubstr("Error scanning for Tavrin Servers: "));
}

} // namespace
