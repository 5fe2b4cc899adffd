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
};

TEST_F(Network, AcceptedEverywhere) {
    write_value(agent_key, "ServerList", "10.9.0.2,10.9.1.9:5000");
    Tool tool;
    tool.select(server_list);
    tool.press(test_connection);
    const Box box = tool.box();
    EXPECT_EQ(box.caption, "Connection test successful");
    EXPECT_EQ(box.text, success);
    box.press(IDOK);
    EXPECT_TRUE(tool.running());
    EXPECT_THAT(printed_by("accept"),
                HasSubstr("wants: version 514, name \"web1\", domain \"example\", id \"\", "
                          "hasMasterKey hasHallmark testing"));
    EXPECT_THAT(printed_by("accept"), HasSubstr("sent the closing element"));
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

} // namespace
} // namespace e2e
