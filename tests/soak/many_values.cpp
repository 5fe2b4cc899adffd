#include "soak/many_values.h"

#include "e2e/agent.h"
#include "e2e/wait.h"
#include "e2e/window.h"

#include <cstdio>
#include <stdexcept>

namespace soak {
namespace {

constexpr char agent_path[] = "SOFTWARE\\Tavrin\\Agent";

std::string numbered(const char* what, int number) {
    char text[32];
    std::snprintf(text, sizeof text, "%s %03d", what, number);
    return text;
}
std::string name_of(int number) { return numbered("value", number); }
std::string title_of(int number) { return numbered("Setting", number); }

/// Long enough that half a text would be noticed.
std::string text_of_age(const std::string& age, int number) {
    std::string text = numbered(age.c_str(), number);
    while (text.size() < 500)
        text += " " + age;
    return text;
}
std::string old_text(int number) { return text_of_age("old", number); }
std::string new_text(int number) { return text_of_age("new", number); }

HWND edit_control(e2e::Tool& tool, int number) {
    const HWND frame = FindWindowExA(tool.window(), nullptr, "Button", title_of(number).c_str());
    return FindWindowExA(frame, nullptr, "Edit", nullptr);
}

/// Shows the settings from the first to the last and does something with the edit control of each.
template <typename Action> void visit_all(e2e::Tool& tool, HTREEITEM first, Action action) {
    const HWND tree = tool.control(e2e::tree_id);
    int number = 0;
    for (HTREEITEM item = first; item; ++number) {
        e2e::send(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
        action(number, edit_control(tool, number));
        item = reinterpret_cast<HTREEITEM>(
            e2e::send(tree, TVM_GETNEXTITEM, TVGN_NEXT, reinterpret_cast<LPARAM>(item)));
    }
}

void set_text(HWND edit, const std::string& text) {
    e2e::send(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

} // namespace

void ManyValues::describe(const std::string& service) const {
    std::string lines = std::string(agent_path) + "\nMany\n" + service + "\n!All\n";
    for (int number = 0; number < count; ++number)
        lines += "$" + title_of(number) + "\n" + name_of(number) + "\nOne of many.\nString\n";
    e2e::use_spec_file("Many", lines);
}

void ManyValues::make_old() const {
    for (int number = 0; number < count; ++number)
        e2e::write_value(agent_path, name_of(number), old_text(number));
}

HTREEITEM ManyValues::first_item(e2e::Tool& tool) const {
    return tool.tree().find({"Many", "All", title_of(0)});
}

void ManyValues::edit_all(e2e::Tool& tool) const {
    visit_all(tool, first_item(tool), [](int number, HWND edit) { set_text(edit, new_text(number)); });
    tool.expect_changes(true);
}

int ManyValues::count_new() const {
    int found = 0;
    for (int number = 0; number < count; ++number) {
        const std::string text = e2e::read_value(agent_path, name_of(number));
        if (text == new_text(number))
            ++found;
        else if (text != old_text(number))
            throw std::runtime_error(name_of(number) + " is neither old nor new: \"" + text + "\"");
    }
    return found;
}

void ManyValues::expect_shown(e2e::Tool& tool) const {
    for (const int number : {0, count / 2, count - 1}) {
        tool.select({"Many", "All", title_of(number)});
        if (e2e::text_of(edit_control(tool, number)) != e2e::read_value(agent_path, name_of(number)))
            throw std::runtime_error("the program does not show " + name_of(number));
    }
    tool.expect_changes(false);
}

void ManyValues::edit_first(e2e::Tool& tool, const std::string& text) const {
    tool.select({"Many", "All", title_of(0)});
    set_text(edit_control(tool, 0), text);
    tool.expect_changes(true);
}

std::string ManyValues::first_value() const { return e2e::read_value(agent_path, name_of(0)); }

FirstWrite::FirstWrite() : written(CreateEventA(nullptr, FALSE, FALSE, nullptr)) {
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, agent_path, 0, KEY_NOTIFY, &key) != ERROR_SUCCESS ||
        RegNotifyChangeKeyValue(key, FALSE, REG_NOTIFY_CHANGE_LAST_SET, written, TRUE) != ERROR_SUCCESS)
        throw std::runtime_error("the registry does not tell of changes");
}

FirstWrite::~FirstWrite() {
    RegCloseKey(key);
    CloseHandle(written);
}

bool FirstWrite::wait(HANDLE process) const {
    const HANDLE either[] = {written, process};
    const DWORD came = WaitForMultipleObjects(2, either, FALSE, e2e::limit * 1000);
    if (came == WAIT_TIMEOUT)
        throw std::runtime_error("waited for the first value to be written");
    return came == WAIT_OBJECT_0;
}

} // namespace soak
