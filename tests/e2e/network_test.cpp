#include "e2e/fixture.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace e2e {
namespace {

using testing::HasSubstr;

const TreePath server_list = {"Tavrin Agent", "Servers", "Server list"};

constexpr char success[] = "All the Tavrin Servers accepted the settings. The Tavrin Agent will now be able "
                           "to check in, once started";

/// What a sample server of the stage has printed.
std::string printed_by(const std::string& server) {
    std::ifstream file("Z:" + environment("TAVRIN_STAGE") + "/" + server + ".txt");
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Against the sample servers of the stage, which are 10.9.0.2 and, on the other network, 10.9.1.9.
class Network : public Sample {
protected:
    void SetUp() override {
        if (environment("TAVRIN_STAGE").empty())
            GTEST_SKIP() << "no sample servers: run through script/isolated tests/e2e/stage";
        Sample::SetUp();
    }

    void expect_test(const std::string& servers, const std::string& caption, const std::string& text) {
        write_value(agent_key, "ServerList", servers);
        Tool tool;
        tool.select(server_list);
        tool.press(test_connection);
        const Box box = tool.box();
        EXPECT_EQ(box.caption, caption);
        EXPECT_EQ(box.text, text);
        box.press(IDOK);
        EXPECT_TRUE(tool.running());
    }
};

TEST_F(Network, AcceptedEverywhere) {
    expect_test("10.9.0.2,10.9.1.9:5000", "Connection test successful", success);
    EXPECT_THAT(printed_by("accept"),
                HasSubstr("wants: version 514, name \"web1\", domain \"example\", id \"\", "
                          "hasMasterKey hasHallmark testing"));
    EXPECT_THAT(printed_by("accept"), HasSubstr("said goodbye"));
}

TEST_F(Network, TwoFailuresAreListedInOrder) {
    expect_test("10.9.0.2:5003,10.9.0.2,10.9.0.2:5001", "Error testing connection",
                "The connection to the server \"10.9.0.2\" at port 5003 failed. The reason was:\n\n"
                "Tavrin Server does not support private key authentication.  Upgrade the Tavrin Server.\n\n"
                "The connection to the server \"10.9.0.2\" at port 5001 failed. The reason was:\n\n"
                "Tavrin Server rejected us: Unknown agent");
}

TEST_F(Network, EmptyNameIsReplacedByTheAddressOfTheConnection) {
    write_value(agent_key, "AgentName", "");
    expect_test("10.9.1.9", "Connection test successful", success);
    EXPECT_THAT(printed_by("accept"), HasSubstr("wants: version 514, name \"10.9.1.1\""));
}

TEST_F(Network, WaitWindowStandsWhileAServerThinks) {
    write_value(agent_key, "ServerList", "10.9.0.2:5004");
    Tool tool;
    tool.select(server_list);
    tool.press(test_connection);
    EXPECT_EQ(text_of(tool.wait_window()), "Tavrin Service Control");
    EXPECT_EQ(tool.box().caption, "Connection test successful");
}

TEST_F(Network, ScanReplacesTheListWithWhoAnswered) {
    Tool tool;
    tool.select(server_list);
    tool.expect_changes(false);
    tool.press_on_page("Server list", "Scan");
    tool.expect_changes(true);
    const std::string found = text_of(tool.page("Server list").controls[0]);
    EXPECT_TRUE(found == "10.9.0.2,10.9.1.9" || found == "10.9.1.9,10.9.0.2") << found;
    EXPECT_EQ(read_value(agent_key, "ServerList"), "127.0.0.1");
    EXPECT_THAT(printed_by("accept"), HasSubstr("10.9.0.1"));
    EXPECT_THAT(printed_by("accept"), HasSubstr("looks for servers"));
}

TEST_F(Network, ScanThatFindsNobodyKeepsTheList) {
    write_value(agent_key, "Port", "5001");
    Tool tool;
    tool.select(server_list);
    tool.press_on_page("Server list", "Scan");
    const Box box = tool.box();
    EXPECT_EQ(box.caption, "No Tavrin Servers Found");
    EXPECT_EQ(box.text, "No Tavrin Servers found at port 5001");
    box.press(IDOK);
    EXPECT_EQ(text_of(tool.page("Server list").controls[0]), "127.0.0.1");
    tool.expect_changes(false);
}

} // namespace
} // namespace e2e
