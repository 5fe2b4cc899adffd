#include "e2e/fixture.h"

namespace e2e {
namespace {

/// Test Connection in configurations whose four titles lead nowhere or to something unfit.
class Lookup : public Sample {
protected:
    /// A configuration with the usual four entries, whose connection test names these titles.
    void use(const std::string& server_list_title, const std::string& port_title) {
        use_spec_file("Agent", "SOFTWARE\\Tavrin\\Agent\nAgent\n!All\n"
                               "$Agent name\nAgentName\nThe name.\nString\n"
                               "$Agent domain\nAgentDomain\nThe domain.\nString\n"
                               "$Server list\nServerList\nThe servers.\nServerList\n"
                               "$Port\nPort\nThe port.\nString\n"
                               "$Measure\nTavrinMeasure\nMeasures.\nSignalEvent\n"
                               "$Test\n\nTests.\nConnectionTest\nAgent name\nAgent domain\n" +
                                   server_list_title + "\n" + port_title + "\n");
    }

    void expect_fatal(Tool& tool, const std::string& text) {
        const Box box = tool.box();
        EXPECT_EQ(box.caption, "Error!");
        EXPECT_EQ(box.text, text);
        box.press(IDOK);
        EXPECT_EQ(tool.exit_code(), 1u);
    }
};

TEST_F(Lookup, MissingTitleEndsTheProgram) {
    use("Servers", "Port");
    Tool tool;
    tool.select({"Agent", "All", "Agent name"});
    tool.press(test_connection);
    expect_fatal(tool, "Did not find anything with the title \"Servers\"");
}

TEST_F(Lookup, TitleOfAnEntryWithoutAValueEndsTheProgram) {
    use("Measure", "Port");
    Tool tool;
    tool.select({"Agent", "All", "Agent name"});
    tool.press(test_connection);
    expect_fatal(tool, "Found title, but it is not a CommonRegKey");
}

TEST_F(Lookup, PortThatIsNoNumberEndsTheProgram) {
    use("Server list", "Port");
    write_value(agent_key, "Port", "many");
    Tool tool;
    tool.select({"Agent", "All", "Agent name"});
    tool.press(test_connection);
    expect_fatal(tool, "Error reading value: Error parsing: \"many\"");
}

TEST_F(Lookup, ScanWithoutAPortEndsTheProgram) {
    use_spec_file("Agent", "SOFTWARE\\Tavrin\\Agent\nAgent\n!All\n"
                           "$Server list\nServerList\nThe servers.\nServerList\n");
    Tool tool;
    tool.select({"Agent", "All", "Server list"});
    tool.press_on_page("Server list", "Scan");
    expect_fatal(tool, "Did not find anything with the title \"Port\"");
}

/// The system swallows what is thrown while it handles a message from another process, so the program must
/// keep it until its own loop runs again.
TEST_F(Lookup, FailureDuringAMessageFromAnotherProcessEndsTheProgramToo) {
    use("Servers", "Port");
    Tool tool;
    tool.select({"Agent", "All", "Agent name"});
    send(tool.window(), WM_COMMAND, test_connection, reinterpret_cast<LPARAM>(tool.control(test_connection)));
    expect_fatal(tool, "Did not find anything with the title \"Servers\"");
}

} // namespace
} // namespace e2e
