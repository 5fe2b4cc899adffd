#include "e2e/fixture.h"

namespace e2e {
namespace {

/// Where the focus is after the user has been elsewhere, seen from outside.
class FocusReturns : public Sample {
protected:
    void edit_the_name(Tool& tool) {
        window = tool.window();
        bring_to_front(window);
        tool.select(agent_name);
        edit = tool.page("Agent name").controls[0];
        click(edit);
        expect_focus(edit, "the name");
    }
    void expect_focus(HWND control, const std::string& what) {
        wait_for("the focus on " + what, [&] { return focus_of(window) == control; });
    }
    void expect_typing_goes_on() {
        expect_focus(edit, "the name");
        press_key(VK_END);
        type("x");
        wait_for("the typed letter", [&] { return text_of(edit) == "web1x"; });
    }

    HWND window = nullptr;
    HWND edit = nullptr;
};

TEST_F(FocusReturns, FromABoxThatTestConnectionShowed) {
    write_value(agent_key, "ServerList", "");
    Tool tool;
    edit_the_name(tool);
    tool.press(test_connection);
    tool.box().press(IDOK);
    expect_focus(tool.control(test_connection), "Test Connection");
    press_key(VK_RETURN);
    tool.box().press(IDOK);
    expect_focus(tool.control(test_connection), "Test Connection");
    tool.tree().select({"Tray Icon", "Tray icon", "Language"});
    expect_focus(tool.control(tree_id), "the tree, since Test Connection is hidden");
}

/// A page that is left by a click into the tree still has the focus when the tree reports the new selection.
TEST_F(FocusReturns, ToThePageThatWasLeftWithItsValueAsTyped) {
    Tool tool;
    edit_the_name(tool);
    Tool other;
    bring_to_front(other.window());
    bring_to_front(window);
    expect_typing_goes_on();
    tool.tree().select({"Tray Icon", "Tray icon", "Language"});
    tool.page("Language");
    tool.select(agent_name);
    EXPECT_EQ(text_of(tool.page("Agent name").controls[0]), "web1x");
    tool.expect_changes(true);
}

/// Closing the window from outside while the agent stops does not change what OK writes.
TEST_F(FocusReturns, NoMoreWhenTheWindowIsClosedWhileTheAgentStops) {
    install_agent("--stop-seconds 3");
    start_agent();
    Tool tool;
    edit_the_name(tool);
    replace_text(edit, "web2");
    tool.expect_changes(true);
    tool.press(ok_id);
    tool.box().press(IDYES);
    tool.wait_window();
    PostMessageA(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(tool.exit_code(), 0u);
    EXPECT_EQ(read_value(agent_key, "AgentName"), "web2");
    expect_agent(SERVICE_RUNNING);
}

} // namespace
} // namespace e2e
