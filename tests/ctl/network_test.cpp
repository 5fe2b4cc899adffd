// test and scan over the substitute, whose sockets are real: servers on the loopback network answer.
#include "ctl/program_run.h"

#include "ctl/failure.h"
#include "ctl/io/printable.h"
#include "net/socket.h"
#include "substitute/control.h"
#include "support/discovery_server.h"
#include "support/loopback.h"
#include "support/octets.h"

#include <gmock/gmock.h>

#include <chrono>
#include <future>
#include <thread>

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
    EXPECT_EQ(done.code, ctl::ExitCode::no_server);
    EXPECT_EQ(done.out,
              place(*good) + "  accepted\n" + place(*bad) + "  failed: Tavrin Server rejected us: no\n");
    EXPECT_EQ(done.err, "");
}

/// Sends elements that a reader skips, an octet every few milliseconds, until the agent gives up.
void drip(loopback::Handle& agent, const std::string& head) {
    loopback::send_all(agent.get(), head);
    const std::string element = text_of("01 01 01"_octets);
    for (std::size_t i = 0; send(agent.get(), &element[i % 3], 1, 0) == 1; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

TEST_F(Network, AServerThatDripsDoesNotHoldTheRun) {
    const loopback::Peer slow([](loopback::Handle& agent) {
        drip(agent, text_of("61 80 02 02 02 05 A1 80 01 01 01 01 01 00 00 00"_octets));
    });
    const auto good = server(accepting);
    set_text(key, "ServerList", place(slow) + "," + place(*good));
    const Ended done = run({"test", "--timeout", "1"});
    EXPECT_EQ(done.code, ctl::ExitCode::no_server);
    EXPECT_EQ(done.out, place(slow) + "  failed: Error receiving data: Timeout in socket_recv()\n" +
                            place(*good) + "  accepted\n");
}

TEST_F(Network, ANameServerThatIsSilentDoesNotHoldTheRun) {
    std::promise<void> end;
    substitute::hold_host("silent.example", end.get_future().share());
    const auto good = server(accepting);
    set_text(key, "ServerList", "silent.example:1," + place(*good));
    const Ended done = run({"test", "--timeout", "1"});
    EXPECT_EQ(done.code, ctl::ExitCode::no_server);
    EXPECT_THAT(done.out,
                testing::StartsWith("silent.example:1  failed: Error resolving \"silent.example\": "));
    EXPECT_THAT(done.out, testing::EndsWith("\n" + place(*good) + "  accepted\n"));
    end.set_value();
}

TEST_F(Network, TheWindowsWaitsStayAsTheyWere) {
    run({"test"});
    EXPECT_EQ(net::patience, nullptr);
    EXPECT_EQ(net::host_lookup, net::look_up_host);
}

TEST_F(Network, ABadItemDoesNotKeepTheOthersFromBeingTested) {
    const auto good = server(accepting);
    set_text(key, "ServerList", "a:b," + place(*good));
    const Ended done = run({"test"});
    EXPECT_EQ(done.code, ctl::ExitCode::invalid);
    EXPECT_EQ(done.out, "a:b  failed: the port \"b\" is not a number\n" + place(*good) + "  accepted\n");
    EXPECT_EQ(done.err, "");
}

TEST_F(Network, AMissingKeyDoesNotKeepTheOthersFromBeingTested) {
    add_configuration("Aaa", "SOFTWARE\\Tavrin\\Nowhere\nAaa\n!G\n$A\nA\nH\nString\n"
                             "$T\n\nH\nConnectionTest\nA\nA\nA\nA\n");
    const auto good = server(accepting);
    set_text(key, "ServerList", place(*good));
    const Ended done = run({"test", "--json"});
    EXPECT_EQ(done.code, ctl::ExitCode::invalid);
    const std::string missing = "the key HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Nowhere does not exist";
    EXPECT_THAT(done.err, testing::StartsWith("tavrinctl: Aaa: " + missing));
    EXPECT_THAT(done.out, HasSubstr("      \"configuration\": \"Aaa\",\n      \"host\": null,\n"
                                    "      \"port\": null,\n      \"accepted\": false,\n"));
    EXPECT_THAT(done.out, HasSubstr("\"port\": " + std::to_string(good->port()) +
                                    ",\n      \"accepted\": true,\n      \"reason\": null\n"));
}

TEST_F(Network, ControlCharactersOfAPeerAreEscaped) {
    const auto hostile = server(text_of("63 80 04 04 1B 5B 7F 41 00 00"_octets));
    set_text(key, "ServerList", place(*hostile));
    EXPECT_EQ(run({"test"}).out, place(*hostile) + "  failed: Tavrin Server rejected us: \\033[\\177A\n");
    // U+009B begins a terminal's sequence as ESC [ does; U+00A0 is a blank.
    EXPECT_EQ(ctl::printable("\xC2\x9B\xC2\xA0"), "\\302\\233\xC2\xA0");
}

TEST_F(Network, EverybodyAccepts) {
    const auto good = server(accepting);
    set_text(key, "ServerList", "127.0.0.1");
    set_text(key, "Port", std::to_string(good->port()));
    const Ended done = run({"test", "--json"});
    EXPECT_EQ(done.code, ctl::ExitCode::success);
    EXPECT_EQ(without_machine(done.out),
              "{\n  \"schema\": 1,\n  \"servers\": [\n    {\n      \"configuration\": \"Agent\",\n"
              "      \"host\": \"127.0.0.1\",\n      \"port\": " +
                  std::to_string(good->port()) +
                  ",\n      \"accepted\": true,\n      \"reason\": null\n    }\n  ]\n}\n");
}

TEST_F(Network, AnEmptyListReachesNobody) {
    const Ended done = run({"test"});
    EXPECT_EQ(done.code, ctl::ExitCode::no_server);
    EXPECT_EQ(done.err, "tavrinctl: Agent: the server list is empty, so no server was reached\n");
}

TEST_F(Network, PortsThatAreNoNumbers) {
    set_text(key, "ServerList", "a:b");
    EXPECT_EQ(run({"test"}).out, "a:b  failed: the port \"b\" is not a number\n");
    set_text(key, "Port", "many");
    const Ended done = run({"test"});
    EXPECT_EQ(done.code, ctl::ExitCode::invalid);
    EXPECT_EQ(done.err, "tavrinctl: Agent: Error reading value: Error parsing: \"many\"\n");
    EXPECT_EQ(run({"scan"}).err, "tavrinctl: Error reading value: Error parsing: \"many\"\n");
}

TEST_F(Network, TitlesThatAreNotFound) {
    const std::string head = "SOFTWARE\\Tavrin\\Agent\nOther\n!G\n$A\nA\nH\nString\n$E\nE\nH\nSignalEvent\n";
    add_configuration("Other", head + "$T\n\nH\nConnectionTest\nA\nA\nNobody\nA\n");
    EXPECT_EQ(run({"test", "Other"}).err,
              "tavrinctl: Other: Did not find anything with the title \"Nobody\"\n");
    add_configuration("Other", head + "$T\n\nH\nConnectionTest\nA\nA\nE\nA\n");
    const Ended done = run({"test", "Other"});
    EXPECT_EQ(done.code, ctl::ExitCode::invalid);
    EXPECT_EQ(done.err, "tavrinctl: Other: Found title, but it is not a CommonRegKey\n");
}

TEST_F(Network, ConfigurationsWithoutATest) {
    add_configuration("Plain", "SOFTWARE\\Tavrin\\Agent\nPlain\n!G\n$A\nA\nH\nString\n");
    const Ended done = run({"test", "Plain"});
    EXPECT_EQ(done.code, ctl::ExitCode::invalid);
    EXPECT_EQ(done.err, "tavrinctl: no configuration has a connection test\n");
}

TEST_F(Network, AScanAsksAtTheConfiguredPort) {
    DiscoveryServer server(
        [](int) {
            return std::vector<Answer>{{1, loopback::discovery_answer()}};
        },
        DiscoveryServer::hears_broadcasts);
    set_text(key, "Port", std::to_string(server.port()));
    const Ended done = run({"scan"});
    EXPECT_EQ(done.code, ctl::ExitCode::success);
    EXPECT_EQ(done.out, "127.0.0.1\n");
    const Ended named = run({"scan", "--json", "--port", std::to_string(server.port())});
    EXPECT_EQ(without_machine(named.out),
              "{\n  \"schema\": 1,\n  \"port\": " + std::to_string(server.port()) +
                  ",\n  \"servers\": [\n    \"127.0.0.1\"\n  ]\n}\n");
}

TEST_F(Network, AScanWithoutAConfiguredPort) {
    delete_value("SOFTWARE\\Tavrin\\TRConfig", "Agent");
    const Ended done = run({"scan"});
    EXPECT_EQ(done.code, ctl::ExitCode::usage);
    EXPECT_EQ(done.err, "tavrinctl: no configuration has a port; use --port\n");
}

TEST_F(Network, AScanThatNobodyAnswers) {
    DiscoveryServer server([](int) { return std::vector<Answer>{}; });
    const std::string port = std::to_string(server.port());
    const Ended done = run({"scan", "--port", port});
    EXPECT_EQ(done.code, ctl::ExitCode::success);
    EXPECT_EQ(done.out, "no Tavrin Server answered at port " + port + "\n");
    EXPECT_EQ(done.err, "");
}

TEST_F(Network, WithoutSocketsThereIsNeither) {
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"test"}, {"scan", "--port", "1"}}) {
        net::started = false;
        substitute::fail_call("WSAStartup", 1, 10091);
        const Ended done = run(words);
        EXPECT_EQ(done.code, ctl::ExitCode::failed);
        EXPECT_THAT(done.err, HasSubstr("Error initializing socket subsystem: "));
    }
}

TEST_F(Network, AScanThatFails) {
    substitute::fail_call("socket", 1, 10055);
    const Ended done = run({"scan", "--port", "1"});
    EXPECT_EQ(done.code, ctl::ExitCode::failed);
    EXPECT_THAT(done.err, HasSubstr("Error scanning for Tavrin Servers: "));
}

} // namespace
