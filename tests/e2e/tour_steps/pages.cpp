#include "e2e/agent.h"
#include "e2e/input.h"
#include "e2e/tour_steps/show.h"
#include "e2e/tour_steps/steps.h"
#include "e2e/wait.h"
#include "e2e/window.h"

namespace e2e {
namespace {

constexpr char list_key[] = "SOFTWARE\\Tavrin\\TRConfig";

void show_page(Tool& tool, const TreePath& path, const std::string& name) {
    tool.select(path);
    picture_of(tool, name);
}

void open_and_cancel(Tool& tool, const std::string& page, const std::string& caption,
                     const std::string& name) {
    tool.select({"Tavrin Agent", "Identity", page});
    tool.press_on_page(page, "...");
    const HWND dialog = tool.dialog(caption);
    picture_of(dialog, name);
    PostMessageA(GetDlgItem(dialog, IDCANCEL), BM_CLICK, 0, 0);
    wait_for("the end of a dialog", [&] { return !IsWindow(dialog); });
}

} // namespace

void show_the_whole_tree() {
    say("the whole tree of the only configuration");
    for (const char* const other : {"Appearance", "Legacy Agent", "Legacy Archive"})
        delete_value(list_key, other);
    Tool tool;
    bring_to_front(tool.window());
    SetWindowPos(tool.window(), nullptr, 0, 0, 520, 360, SWP_NOMOVE | SWP_NOZORDER);
    for (const char* const group : {"Identity", "Servers", "Measuring", "Maintenance"})
        send(tool.control(tree_id), TVM_EXPAND, TVE_EXPAND,
             reinterpret_cast<LPARAM>(tool.tree().find({"Tavrin Agent", group})));
    tool.select({"Tavrin Agent", "Servers", "Server list"});
    // Wine does not paint buttons that a program from outside has moved with their window.
    RedrawWindow(tool.window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    picture_of(tool, "whole-tree");
    tool.press(close_id);
    expect_end(tool, 0);
    seed_registry();
}

void edit_a_setting(Tool& tool) {
    say("a setting is opened and changed");
    tool.select({"Tavrin Agent", "Identity", "Agent name"});
    tool.expect_changes(false);
    picture_of(tool, "setting-opened");
    change_the_name(tool);
    picture_of(tool, "setting-changed");
}

void change_the_name(Tool& tool) {
    tool.select({"Tavrin Agent", "Identity", "Agent name"});
    replace_text(tool.page("Agent name").controls[0], "web2");
    tool.expect_changes(true);
}

void cancel(Tool& tool) {
    say("Cancel writes nothing");
    tool.press(close_id);
    expect_end(tool, 0);
    expect("the stored name", read_value(agent_key, "AgentName"), "web1");
}

void show_every_kind_of_page(Tool& tool) {
    say("every kind of page");
    const std::string root = "Tavrin Agent";
    show_page(tool, {root, "Identity", "Agent domain"}, "page-text");
    show_page(tool, {root, "Identity", "Data folder"}, "page-folder");
    show_page(tool, {root, "Identity", "Log file"}, "page-file");
    show_page(tool, {root, "Servers", "Server list"}, "page-server-list");
    show_page(tool, {root, "Servers", "Port"}, "page-number");
    show_page(tool, {root, "Measuring", "Compress reports"}, "page-yes-or-no");
    show_page(tool, {root, "Measuring", "Detail"}, "page-choice");
    show_page(tool, {root, "Measuring", "Modem port"}, "page-serial-port");
    show_page(tool, {root, "Maintenance", "Measure now"}, "page-signal");
    show_page(tool, {root, "Maintenance", "Forget certificates"}, "page-key-removal");
    show_page(tool, {"Legacy Agent", "Retries"}, "page-of-an-old-spec-file");
    show_page(tool, {"Tray Icon", "Tray icon", "Language"}, "page-without-a-connection-test");
}

void show_the_systems_dialogs(Tool& tool) {
    say("the dialogs for folders and files");
    open_and_cancel(tool, "Data folder", "Browse for Folder", "folder-dialog");
    open_and_cancel(tool, "Log file", "File selection...", "file-dialog");
}

void start_with_an_unknown_type() {
    say("an entry of an unknown type is reported and passed over");
    use_spec_file("Newer", "SOFTWARE\\Tavrin\\Agent\nNewer\n!All\n$Colour\nColour\nA colour.\nPalette\n"
                           "$Port\nPort\nThe port.\nInteger\n");
    Tool tool;
    answer_box(tool, "unknown-type", "Error", "Unknown type: \"Palette\", for subspec Colour", IDOK);
    tool.select({"Newer", "All", "Port"});
    tool.press(close_id);
    expect_end(tool, 0);
}

void start_without_a_configuration() {
    say("a registry without configurations ends the program");
    delete_key(list_key);
    Tool tool;
    answer_box(tool, "fatal-error", "Error!", "Cannot read out SOFTWARE\\Tavrin\\TRConfig", IDOK);
    expect_end(tool, 1);
}

} // namespace e2e
