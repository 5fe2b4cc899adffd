// Servers that never stop sending: the memory of the program does not depend on how much it has received.
#include "e2e/fixture.h"

#include <psapi.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>

namespace soak {
namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr std::size_t most_bytes = 20 * 1024 * 1024;

const e2e::TreePath server_list = {"Tavrin Agent", "Servers", "Server list"};

std::size_t private_bytes(const e2e::Tool& tool) {
    PROCESS_MEMORY_COUNTERS counters = {};
    GetProcessMemoryInfo(tool.process_handle(), &counters, sizeof counters);
    return counters.PagefileUsage; // Wine does not fill in PrivateUsage
}

std::string printed_by_the_floods() {
    std::ifstream file("Z:" + e2e::environment("TAVRIN_STAGE") + "/flood.txt");
    return {std::istreambuf_iterator<char>(file), {}};
}

class Flood : public e2e::Sample {
protected:
    void SetUp() override {
        if (e2e::environment("TAVRIN_STAGE").empty())
            GTEST_SKIP() << "no servers: run through script/isolated tests/e2e/stage";
        Sample::SetUp();
    }

    static void begin_test(e2e::Tool& tool) {
        tool.select(server_list);
        tool.press(e2e::test_connection);
        tool.wait_window();
    }
    static bool is_scan_over() { return printed_by_the_floods().find("answers: ") != std::string::npos; }
};

TEST_F(Flood, TakesNoMemory) {
    e2e::write_value(e2e::agent_key, "ServerList", "10.9.0.2:5010");
    e2e::Tool nested;
    begin_test(nested);
    e2e::write_value(e2e::agent_key, "ServerList", "10.9.0.2:5011");
    e2e::Tool large;
    begin_test(large);
    e2e::write_value(e2e::agent_key, "Port", "5012");
    e2e::Tool scanning;
    scanning.select(server_list);
    scanning.press_on_page("Server list", "Scan");
    const HWND list = scanning.page("Server list").controls[0];

    std::size_t most = 0;
    e2e::wait_for("the end of the floods", [&] {
        for (const e2e::Tool* tool : {&nested, &large, &scanning})
            most = std::max(most, private_bytes(*tool));
        return !nested.shows_wait_window() && !large.shows_wait_window() && is_scan_over();
    });
    std::cout << most << " private bytes at most while it heard\n" << printed_by_the_floods() << std::flush;
    EXPECT_GT(most, 0u);
    EXPECT_LT(most, most_bytes);
    for (e2e::Tool* tool : {&nested, &large})
        EXPECT_THAT(tool->box().text, HasSubstr("Peer closed connection unexpectedly"));
    EXPECT_THAT(printed_by_the_floods(), AllOf(HasSubstr("deepen: "), HasSubstr("widen: ")));
    std::string found;
    e2e::wait_for("the list of servers", [&] { return (found = e2e::text_of(list)) != "10.9.0.2:5011"; });
    EXPECT_EQ(std::count(found.begin(), found.end(), ','), 252) << found; // the network's hosts but this one
}

} // namespace
} // namespace soak
