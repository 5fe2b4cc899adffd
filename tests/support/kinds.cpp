#include "support/kinds.h"

#include <algorithm>
#include <iterator>

namespace {

TestedControl edit(const char* failure, int width, LONG_PTR style = 0) {
    return {.window_class = "Edit",
            .style = ES_AUTOHSCROLL | style,
            .has_sunken_edge = true,
            .failure = failure,
            .placement = {.x = 10, .y = 149, .width = width, .height = 20},
            .edited = EN_CHANGE};
}

TestedControl check_box(const char* text, const char* failure) {
    return {.window_class = "Button",
            .text = text,
            .style = BS_AUTOCHECKBOX,
            .failure = failure,
            .placement = {.x = 10, .y = 154, .width = 178, .height = 15},
            .edited = BN_CLICKED};
}

TestedControl push_button(const char* text, const char* failure, const Placement& placement) {
    return {.window_class = "Button", .text = text, .failure = failure, .placement = placement};
}

/// As high as the opened list.
const TestedControl list{.window_class = "ComboBox",
                         .style = CBS_DROPDOWNLIST,
                         .failure = "Unable to create combobox control",
                         .placement = {.x = 10, .y = 149, .width = 178, .height = 140},
                         .edited = CBN_SELCHANGE};
constexpr Placement beside_path{.x = 158, .y = 149, .width = 30, .height = 20};
constexpr Placement beside_servers{.x = 138, .y = 147, .width = 50, .height = 22};
constexpr Placement alone{.x = 10, .y = 147, .width = 178, .height = 22};

} // namespace

const std::vector<PageKind> page_kinds = {
    {.type = "String",
     .entry = "StringEntry",
     .view = View::text,
     .controls = {edit("Unable to create text entry control", 178)}},
    {.type = "string",
     .entry = "StringEntry",
     .view = View::text,
     .controls = {edit("Unable to create text entry control", 178)}},
    {.type = "Integer",
     .entry = "IntegerEntry",
     .view = View::number,
     .controls = {edit("Unable to create integer entry control", 178, ES_NUMBER)}},
    {.type = "Boolean",
     .entry = "BooleanEntry",
     .view = View::check,
     .controls = {check_box("Enabled", "Unable to create checkbox control")}},
    {.type = "Options",
     .entry = "OptionEntry",
     .view = View::list,
     .more = More::options,
     .controls = {list}},
    {.type = "COM", .entry = "OptionEntry", .view = View::list, .lists_ports = true, .controls = {list}},
    {.type = "RemoveKey",
     .entry = "DeleteKey",
     .view = View::removal,
     .controls = {check_box("Delete", "Unable to create checkbox delete control")}},
    {.type = "SignalEvent",
     .entry = "SignalEvent",
     .controls = {push_button("Execute", "Unable to create scan button", alone)}},
    {.type = "Directory",
     .entry = "DirectorySelector",
     .view = View::text,
     .controls = {edit("Unable to create dir box", 138),
                  push_button("...", "Unable to create dir button", beside_path)}},
    {.type = "File",
     .entry = "FileSelector",
     .view = View::text,
     .more = More::extension,
     .controls = {edit("Unable to create file box", 138),
                  push_button("...", "Unable to create file button", beside_path)}},
    {.type = "ServerList",
     .entry = "ServerListEntry",
     .view = View::text,
     .for_connection_test = true,
     .controls = {edit("Unable to create text entry box", 123),
                  push_button("Scan", "Unable to create scan button", beside_servers)}},
};

std::string PageKind::button() const {
    const TestedControl& last = controls.back();
    return last.edited ? std::string() : std::string(last.text);
}

std::string PageKind::subspec(const std::string& title, const std::string& value_name) const {
    const char* const below = more == More::options ? "low\nhigh\n" : more == More::extension ? "log\n" : "";
    return "$" + title + "\n" + value_name + "\nHelp\n" + type + "\n" + below;
}

std::ostream& operator<<(std::ostream& out, const PageKind& kind) { return out << kind.type; }

const PageKind* find_page_kind(const std::string& type) {
    const auto found = std::find_if(page_kinds.begin(), page_kinds.end(),
                                    [&](const PageKind& kind) { return kind.type == type; });
    return found == page_kinds.end() ? nullptr : &*found;
}

std::vector<PageKind> kinds_seen_as(View view) {
    std::vector<PageKind> found;
    std::copy_if(page_kinds.begin(), page_kinds.end(), std::back_inserter(found),
                 [&](const PageKind& kind) { return kind.view == view; });
    return found;
}
