#include "e2e/fixture.h"

namespace e2e {
namespace {

using testing::HasSubstr;

class Edit : public Sample {};

/// Tests the driver itself: if two quick clicks became a double click, the second one would not move the
/// focus.
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

} // namespace
} // namespace e2e
