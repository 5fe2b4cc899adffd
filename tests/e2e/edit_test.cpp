#include "e2e/fixture.h"

namespace e2e {
namespace {

using testing::HasSubstr;

class Edit : public Sample {};

TEST_F(Edit, PageShowsTitleHelpAndValue) {
    Tool tool;
    tool.select(agent_name);
    const Page page = tool.page("Agent name");
    EXPECT_EQ(page.help,
              "The name under which this machine appears on the Tavrin Servers. Leave it empty to use "
              "the IP address of the connection.");
    ASSERT_EQ(page.controls.size(), 1u);
    EXPECT_TRUE(is_class(page.controls[0], "Edit"));
    EXPECT_EQ(text_of(page.controls[0]), "web1");
}

TEST_F(Edit, ButtonsFollowTheEditAndItsUndoing) {
    Tool tool;
    bring_to_front(tool.window());
    tool.select(agent_name);
    tool.expect_changes(false);
    const HWND edit = tool.page("Agent name").controls[0];
    replace_text(edit, "web2");
    tool.expect_changes(true);
    tool.select({"Tavrin Agent", "Servers", "Port"});
    tool.expect_changes(true);
    tool.select(agent_name);
    replace_text(tool.page("Agent name").controls[0], "web1");
    tool.expect_changes(false);
    tool.press(close_id);
    EXPECT_EQ(tool.exit_code(), 0u);
}

/// Guards the driver itself: were two quick clicks a double click, the second would not bring the focus.
TEST_F(Edit, QuickClicksEachTakeTheFocus) {
    Tool tool;
    bring_to_front(tool.window());
    tool.select(agent_name);
    const HWND edit = tool.page("Agent name").controls[0];
    for (int times = 1; times <= 5; ++times) {
        click(edit);
        wait_for("the focus on the edit control", [&] { return focus_of(edit) == edit; });
        press_key(VK_TAB);
        wait_for("the focus elsewhere", [&] { return focus_of(edit) != edit; });
    }
}

TEST_F(Edit, GroupNodesShowNoPage) {
    Tool tool;
    tool.select(agent_name);
    tool.tree().select({"Tavrin Agent", "Identity"});
    wait_for("no page", [&] { return !tool.shows_page(); });
}

TEST_F(Edit, OkWritesWhatTheRegistryToolThenShows) {
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

TEST_F(Edit, EveryConfigurationIsWrittenAndNothingElse) {
    Tool tool;
    bring_to_front(tool.window());
    tool.select({"Legacy Agent", "Proxy"});
    replace_text(tool.page("Proxy").controls[0], "proxy:3128");
    tool.select({"Tray Icon", "Tray icon", "Show icon"});
    toggle(tool.page("Show icon").controls[0]);
    tool.expect_changes(true);
    tool.press(ok_id);
    EXPECT_EQ(tool.exit_code(), 0u);
    EXPECT_EQ(read_value("SOFTWARE\\Tavrin\\Legacy", "Proxy"), "proxy:3128");
    EXPECT_EQ(read_value("SOFTWARE\\Tavrin\\Legacy", "StartDelay"), "0x10");
    EXPECT_EQ(read_value("SOFTWARE\\Tavrin\\Appearance", "ShowIcon"), "false");
    EXPECT_EQ(read_value("SOFTWARE\\Tavrin\\Appearance", "Language"), "English");
}

TEST_F(Edit, LookingAtAHexadecimalNumberMarksItChanged) {
    Tool tool;
    tool.select({"Legacy Agent", "Start", "Start delay"});
    EXPECT_EQ(text_of(tool.page("Start delay").controls[0]), "16");
    tool.expect_changes(true);
}

class Discarding : public Sample, public testing::WithParamInterface<bool> {};

TEST_P(Discarding, WritesNothing) {
    Tool tool;
    bring_to_front(tool.window());
    tool.select(agent_name);
    replace_text(tool.page("Agent name").controls[0], "discarded");
    tool.expect_changes(true);
    if (GetParam())
        tool.press(close_id);
    else
        PostMessageA(tool.window(), WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_EQ(tool.exit_code(), 0u);
    EXPECT_EQ(read_value(agent_key, "AgentName"), "web1");
}

INSTANTIATE_TEST_SUITE_P(By, Discarding, testing::Bool(), [](const auto& instance) {
    return instance.param ? "Cancel" : "CloseBoxOfTheFrame";
});

TEST_F(Edit, ForgottenKeyIsDeleted) {
    Tool tool;
    bring_to_front(tool.window());
    tool.select({"Tavrin Agent", "Maintenance", "Forget certificates"});
    toggle(tool.page("Forget certificates").controls[0]);
    tool.expect_changes(true);
    tool.press(ok_id);
    const Box box = tool.box(); // no agent is installed
    EXPECT_EQ(box.caption, "Service must be restarted manually");
    box.press(IDOK);
    EXPECT_EQ(tool.exit_code(), 0u);
    EXPECT_EQ(read_value("SOFTWARE\\Tavrin\\Agent\\Certificates", "127.0.0.1"), "");
}

TEST_F(Edit, KeyThatVanishesBeforeOkEndsTheProgramAndKeepsWhatWasWritten) {
    Tool tool;
    bring_to_front(tool.window());
    tool.select({"Legacy Agent", "Proxy"});
    replace_text(tool.page("Proxy").controls[0], "proxy:3128");
    tool.select({"Tray Icon", "Tray icon", "Show icon"});
    toggle(tool.page("Show icon").controls[0]);
    tool.expect_changes(true);
    delete_key("SOFTWARE\\Tavrin\\Appearance");
    tool.press(ok_id);
    const Box box = tool.box();
    EXPECT_EQ(box.caption, "Error!");
    EXPECT_EQ(box.text, "Cannot open path \"SOFTWARE\\Tavrin\\Appearance\" for writing");
    box.press(IDOK);
    EXPECT_EQ(tool.exit_code(), 1u);
    EXPECT_EQ(read_value("SOFTWARE\\Tavrin\\Legacy", "Proxy"), "proxy:3128");
}

} // namespace
} // namespace e2e
