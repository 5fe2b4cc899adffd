// The command line beside the open window: each writes what it changes and nothing else.
#include "e2e/fixture.h"

namespace e2e {
namespace {

using testing::HasSubstr;

std::string tavrinctl(const std::string& words) { return run(program_folder() + "\\tavrinctl.exe " + words); }

TEST_F(Sample, TheCommandLineAndTheWindowWriteTheirOwnChangesOnly) {
    Tool tool;
    bring_to_front(tool.window());
    tool.select(agent_name);
    replace_text(tool.page("Agent name").controls[0], "web2");
    tool.expect_changes(true);
    EXPECT_THAT(tavrinctl("set \"Tavrin Agent\" Interval=61"), HasSubstr("Interval: 60 -> 61"));
    EXPECT_EQ(read_value(agent_key, "AgentName"), "web1") << "what the window has not written yet";
    tool.press(ok_id);
    tool.box().press(IDOK); // there is no service to restart
    EXPECT_EQ(tool.exit_code(), 0u);
    EXPECT_EQ(read_value(agent_key, "AgentName"), "web2");
    EXPECT_EQ(read_value(agent_key, "Interval"), "61");
}

} // namespace
} // namespace e2e
