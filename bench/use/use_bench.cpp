// What a person does in the window, with few entries and with many. The whole program runs, over the
// substitute, and the person is a step of its message loop. The program must do what it would do for a
// person.
#include "app/main_window_controls.h"
#include "app/start_up.h"
#include "pages/configuration.h"
#include "substitute/control.h"
#include "window/top_level.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>

namespace {

constexpr char spec_file[] = "use_bench.spec";
constexpr char list_key[] = "SOFTWARE\\Tavrin\\TRConfig";
constexpr char agent_key[] = "SOFTWARE\\Vendor\\Agent";

void write_spec(int entries) {
    std::ofstream file(spec_file, std::ios::binary);
    file << '\\' << agent_key << "\nAgent\n!General\n";
    for (int i = 0; i < entries; ++i)
        file << "$Setting number " << i << "\nValue" << i << "\nWhat this setting is good for.\nString\n";
}

void add_value(const char* path, const char* name, const std::string& text) {
    HKEY key = nullptr;
    RegCreateKeyExA(HKEY_LOCAL_MACHINE, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                    &key, nullptr);
    RegSetValueExA(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                   static_cast<DWORD>(text.size()) + 1);
    RegCloseKey(key);
}

/// Runs the program with this number of entries; the person does one thing and closes the window.
void run(int entries, const std::function<void()>& person) {
    substitute::reset();
    configurations.clear();
    entryByGroupBox.clear();
    write_spec(entries);
    add_value(list_key, "Agent", spec_file);
    add_value(agent_key, "Value0", "4711");
    substitute::then(person);
    substitute::then([] { PostMessageA(main_window, WM_CLOSE, 0, 0); });
    if (run_program(nullptr, SW_SHOWNORMAL) != 0)
        throw std::runtime_error("the program failed");
    std::remove(spec_file);
}

void expect(bool good, const char* what) {
    if (!good)
        throw std::runtime_error(what);
}

HWND tree() { return GetDlgItem(main_window, tree_id); }
HTREEITEM next(WPARAM relation, HTREEITEM item) {
    return reinterpret_cast<HTREEITEM>(
        SendMessageA(tree(), TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
}
HTREEITEM root() { return next(TVGN_ROOT, nullptr); }
HTREEITEM group() { return next(TVGN_CHILD, root()); }
HTREEITEM first_entry() { return next(TVGN_CHILD, group()); }
HTREEITEM last_entry() {
    HTREEITEM last = first_entry();
    while (const HTREEITEM item = next(TVGN_NEXT, last))
        last = item;
    return last;
}
void select(HTREEITEM item) {
    SendMessageA(tree(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
}

/// The shown page's control; the help text comes before it.
HWND edit() {
    expect(entryByGroupBox.size() == 1, "there is not one page");
    return GetWindow(GetWindow(entryByGroupBox.begin()->first, GW_CHILD), GW_HWNDNEXT);
}
bool shows(const char* text) {
    char buffer[64] = "";
    GetWindowTextA(edit(), buffer, sizeof buffer);
    return std::string(buffer) == text;
}

void handle_messages() {
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

/// A letter and a backspace, with everything that the program does for them.
void press_keys(benchmark::State& state) {
    select(first_entry());
    expect(shows("4711"), "the page does not show the value");
    const HWND target = edit();
    SendMessageA(target, WM_CHAR, 'x', 0);
    handle_messages();
    expect(IsWindowEnabled(GetDlgItem(main_window, ok_id)) != FALSE, "a key press makes no change");
    SendMessageA(target, WM_CHAR, '\b', 0);
    handle_messages();
    for (auto _ : state) {
        SendMessageA(target, WM_CHAR, 'x', 0);
        handle_messages();
        SendMessageA(target, WM_CHAR, '\b', 0);
        handle_messages();
    }
    expect(shows("4711"), "the keys did not reach the control");
}

/// From one entry to its neighbour and back.
void switch_pages(benchmark::State& state) {
    const HTREEITEM first = first_entry();
    const HTREEITEM second = next(TVGN_NEXT, first);
    for (auto _ : state) {
        select(second);
        select(first);
    }
    expect(shows("4711"), "the page does not show the value");
}

/// From the first entry to a group, which has no page, to the last entry and back.
void select_far_items(benchmark::State& state) {
    const HTREEITEM first = first_entry();
    const HTREEITEM last = last_entry();
    const HTREEITEM above = group();
    for (auto _ : state) {
        select(last);
        select(above);
        select(first);
    }
    expect(shows("4711"), "the page does not show the value");
}

void add(const char* what, void (*person)(benchmark::State&)) {
    for (const int entries : {10, 100000}) {
        const std::string name = std::string(what) + "/" + std::to_string(entries);
        benchmark::RegisterBenchmark(name.c_str(), [entries, person](benchmark::State& state) {
            run(entries, [&] { person(state); });
        });
    }
}

} // namespace

int main(int count, char** arguments) {
    add("key press and backspace", press_keys);
    add("page switch, there and back", switch_pages);
    add("selection in the tree, far", select_far_items);
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
