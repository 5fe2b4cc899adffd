#include "support/program.h"

#include "app/main_window_controls.h"
#include "app/start_up.h"
#include "pages/configuration.h"
#include "support/registry.h"
#include "window/top_level.h"

#include <cstdio>
#include <fstream>

namespace {

HTREEITEM next_item(WPARAM which, HTREEITEM from) {
    return reinterpret_cast<HTREEITEM>(
        SendMessageA(control(tree_id), TVM_GETNEXTITEM, which, reinterpret_cast<LPARAM>(from)));
}

std::string item_text(HTREEITEM from) {
    char text[512] = "";
    TVITEMA wanted{};
    wanted.mask = TVIF_TEXT;
    wanted.hItem = from;
    wanted.pszText = text;
    wanted.cchTextMax = sizeof text;
    SendMessageA(control(tree_id), TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&wanted));
    return text;
}

/// Depth first; stops when `visit` answers true, and returns that item.
HTREEITEM walk(HTREEITEM first, int depth, const std::function<bool(HTREEITEM, int)>& visit) {
    for (HTREEITEM at = first; at != nullptr; at = next_item(TVGN_NEXT, at)) {
        if (visit(at, depth))
            return at;
        if (const HTREEITEM below = walk(next_item(TVGN_CHILD, at), depth + 1, visit))
            return below;
    }
    return nullptr;
}

bool is_group_box(HWND window) {
    char name[32] = "";
    GetClassNameA(window, name, sizeof name);
    return std::string(name) == "Button" && (GetWindowLongPtrA(window, GWL_STYLE) & 0xF) == BS_GROUPBOX;
}

} // namespace

ProgramTest::ProgramTest() {
    delete_key(list_key);
    make_key(list_key);
    make_key(agent_key);
}

ProgramTest::~ProgramTest() {
    if (main_window != nullptr && IsWindow(main_window))
        DestroyWindow(main_window);
    pump_messages();
    main_window = nullptr;
    configurations.clear();
    UnregisterClassA("trconfigclass", GetModuleHandleA(nullptr));
    delete_key(list_key);
}

void ProgramTest::spec_file(const std::string& value_name, const std::string& text) {
    const std::string path = folder_.path_of(std::to_string(++spec_files_) + ".spec");
    std::ofstream(path, std::ios::binary) << text;
    set_text(list_key, value_name, path);
}

void ProgramTest::then_edit(const std::string& item_text, const std::string& text) {
    then([=] { select(item_text); });
    then([=] { SetWindowTextA(page_controls().at(0), text.c_str()); });
}

int ProgramTest::run() {
    steps.then([] { PostMessageA(main_window, WM_CLOSE, 0, 0); });
    return run_program(GetModuleHandleA(nullptr), SW_SHOWNORMAL);
}

std::string ProgramTest::shown_tree() {
    std::string tree = "not looked at";
    then([&] { tree = tree_text(); });
    EXPECT_EQ(run(), 0);
    return tree;
}

HWND control(int id) { return GetDlgItem(main_window, id); }

std::string tree_text() {
    std::string text;
    walk(next_item(TVGN_ROOT, nullptr), 0, [&](HTREEITEM at, int depth) {
        text += std::string(static_cast<std::size_t>(depth), ' ') + item_text(at) + "\n";
        return false;
    });
    return text;
}

HTREEITEM item(const std::string& text) {
    return walk(next_item(TVGN_ROOT, nullptr), 0, [&](HTREEITEM at, int) { return item_text(at) == text; });
}

void select(const std::string& text) {
    SendMessageA(control(tree_id), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item(text)));
}

HWND page() {
    for (HWND child = GetWindow(main_window, GW_CHILD); child != nullptr;
         child = GetWindow(child, GW_HWNDNEXT)) {
        if (is_group_box(child))
            return child;
    }
    return nullptr;
}

std::vector<HWND> page_controls() {
    std::vector<HWND> controls;
    const HWND help = GetWindow(page(), GW_CHILD);
    for (HWND child = GetWindow(help, GW_HWNDNEXT); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        controls.push_back(child);
    return controls;
}
