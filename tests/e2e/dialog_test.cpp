#include "e2e/fixture.h"

namespace e2e {
namespace {

const TreePath folder_page = {"Tavrin Agent", "Identity", "Data folder"};
const TreePath file_page = {"Tavrin Agent", "Identity", "Log file"};

/// The system's own dialogs, opened from the pages of folders and files.
class Dialog : public Sample {};

void wait_for_end_of(HWND dialog) {
    wait_for("the end of a dialog", [&] { return !IsWindow(dialog); });
}

TEST_F(Dialog, FolderBrowserOpensAtTheFolderAndGivesIt) {
    Tool tool;
    bring_to_front(tool.window());
    tool.select(folder_page);
    const HWND edit = tool.page("Data folder").controls[0];
    replace_text(edit, "c:\\WINDOWS");
    tool.press_on_page("Data folder", "...");
    const HWND browser = tool.dialog("Browse for Folder");
    wait_for("a folder that can be chosen",
             [&] { return IsWindowEnabled(GetDlgItem(browser, IDOK)) != FALSE; });
    PostMessageA(GetDlgItem(browser, IDOK), BM_CLICK, 0, 0);
    wait_for_end_of(browser);
    wait_for("the folder's own spelling", [&] { return text_of(edit) == "C:\\windows"; });
    tool.expect_changes(true);
}

TEST_F(Dialog, ChosenFileBecomesTheValueAndIsWritten) {
    Tool tool;
    tool.select(file_page);
    tool.press_on_page("Log file", "...");
    const HWND dialog = tool.dialog("File selection...");
    bring_to_front(dialog);
    wait_for("the name's field", [&] { return is_class(focus_of(dialog), "Edit"); });
    replace_text(focus_of(dialog), "C:\\windows\\win.ini");
    press_key(VK_RETURN);
    wait_for_end_of(dialog);
    EXPECT_EQ(text_of(tool.page("Log file").controls[0]), "C:\\windows\\win.ini");
    tool.expect_changes(true);
    tool.press(ok_id);
    tool.box().press(IDOK); // no agent is installed
    EXPECT_EQ(tool.exit_code(), 0u);
    EXPECT_EQ(read_value(agent_key, "LogFile"), "C:\\windows\\win.ini");
}

} // namespace
} // namespace e2e
