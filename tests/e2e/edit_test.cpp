#include "e2e/fixture.h"

namespace e2e {
namespace {

using testing::HasSubstr;

class Edit : public Sample {};

TEST_F(Edit, OkWritesWhatTheRegistryToolThenShowsAndLeavesTheOtherConfigurationsServiceAlone) {
    install_agent();
    start_agent();
    Tool tool;
    bring_to_front(tool.window());
    tool.select({"Tray Icon", "Tray icon", "Language"});
    const HWND list = tool.page("Language").controls[0];
    click(list);
    wait_for("the open list", [&] { return send(list, CB_GETDROPPEDSTATE) != 0; });
    press_key(VK_DOWN);
    press_key(VK_RETURN);
    tool.expect_changes(true);
    tool.press(ok_id);
    EXPECT_EQ(tool.exit_code(), 0u);
    EXPECT_THAT(run("reg.exe query HKLM\\SOFTWARE\\Tavrin\\Appearance /v Language"),
                HasSubstr("Language    REG_SZ    Dansk"));
    EXPECT_EQ(agent_state(), static_cast<DWORD>(SERVICE_RUNNING));
    EXPECT_THAT(agent_notes(), testing::EndsWith("started\n"));
}

/// The system puts back the choice with which the list was opened.
TEST_F(Edit, AListThatIsClosedWithoutAChoiceChangesNothing) {
    Tool tool;
    bring_to_front(tool.window());
    tool.select({"Tray Icon", "Tray icon", "Language"});
    const Page page = tool.page("Language");
    const HWND list = page.controls[0];
    click(list);
    wait_for("the open list", [&] { return send(list, CB_GETDROPPEDSTATE) != 0; });
    press_key(VK_DOWN);
    tool.expect_changes(true);
    click(page.frame);
    wait_for("the closed list", [&] { return send(list, CB_GETDROPPEDSTATE) == 0; });
    tool.expect_changes(false);
    EXPECT_EQ(send(list, CB_GETCURSEL), 0);
}

/// A page that is left by a click into the tree still has the focus when the tree reports the new selection.
TEST_F(Edit, GoesOnAfterAVisitToAnotherProgramAndIsKeptWhenItsPageIsLeft) {
    Tool tool;
    const HWND window = tool.window();
    bring_to_front(window);
    tool.select(agent_name);
    const HWND edit = tool.page("Agent name").controls[0];
    const auto expect_focus = [&] {
        wait_for("the focus on the name", [&] { return focus_of(window) == edit; });
    };
    click(edit);
    expect_focus();
    Tool other;
    bring_to_front(other.window());
    bring_to_front(window);
    expect_focus();
    press_key(VK_END);
    type("x");
    wait_for("the typed letter", [&] { return text_of(edit) == "web1x"; });
    tool.tree().select({"Tray Icon", "Tray icon", "Language"});
    tool.page("Language");
    tool.select(agent_name);
    EXPECT_EQ(text_of(tool.page("Agent name").controls[0]), "web1x");
    tool.expect_changes(true);
}

/// The system swallows what is thrown while it handles a message from another process, so the program must
/// keep it until its own loop runs again.
TEST_F(Sample, FailureDuringAMessageFromAnotherProcessEndsTheProgramToo) {
    use_spec_file("Agent", "SOFTWARE\\Tavrin\\Agent\nAgent\n!All\n"
                           "$Name\nAgentName\nThe name.\nString\n"
                           "$Test\n\nTests.\nConnectionTest\nName\nName\nServers\nPort\n");
    Tool tool;
    tool.select({"Agent", "All", "Name"});
    send(tool.window(), WM_COMMAND, test_connection, reinterpret_cast<LPARAM>(tool.control(test_connection)));
    const Box box = tool.box();
    EXPECT_EQ(box.caption, "Error!");
    EXPECT_EQ(box.text, "Did not find anything with the title \"Servers\"");
    box.press(IDOK);
    EXPECT_EQ(tool.exit_code(), 1u);
}

} // namespace
} // namespace e2e
