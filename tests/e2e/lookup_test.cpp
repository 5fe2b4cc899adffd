#include "e2e/fixture.h"

namespace e2e {
namespace {

/// Buttons of a configuration that names titles of no entry.
class Lookup : public Sample {
protected:
    void expect_fatal(Tool& tool, const std::string& text) {
        const Box box = tool.box();
        EXPECT_EQ(box.caption, "Error!");
        EXPECT_EQ(box.text, text);
        box.press(IDOK);
        EXPECT_EQ(tool.exit_code(), 1u);
    }
};

TEST_F(Lookup, ScanWithoutAPortEndsTheProgram) {
    use_spec_file("Agent", "SOFTWARE\\Tavrin\\Agent\nAgent\n!All\n"
                           "$Server list\nServerList\nThe servers.\nServerList\n");
    Tool tool;
    tool.select({"Agent", "All", "Server list"});
    tool.press_on_page("Server list", "Scan");
    expect_fatal(tool, "Did not find anything with the title \"Port\"");
}

/// The system swallows an exception that is thrown while it delivers a message from another process, so the
/// program must keep it until its own loop runs again.
TEST_F(Lookup, FailureDuringAMessageFromAnotherProcessEndsTheProgramToo) {
    use_spec_file("Agent", "SOFTWARE\\Tavrin\\Agent\nAgent\n!All\n"
                           "$Name\nAgentName\nThe name.\nString\n"
                           "$Test\n\nTests.\nConnectionTest\nName\nName\nServers\nPort\n");
    Tool tool;
    tool.select({"Agent", "All", "Name"});
    send(tool.window(), WM_COMMAND, test_connection, reinterpret_cast<LPARAM>(tool.control(test_connection)));
    expect_fatal(tool, "Did not find anything with the title \"Servers\"");
}

} // namespace
} // namespace e2e
