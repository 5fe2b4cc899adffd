#include "driver/work.h"

#include "app/main_window_controls.h"
#include "driver/private_memory.h"
#include "driver/program.h"
#include "driver/seed.h"
#include "e2e/process.h"
#include "e2e/window.h"
#include "seeded.h"

#include <filesystem>
#include <stdexcept>

namespace bench {
namespace {

std::string program(const std::string& name) { return e2e::program_folder() + "\\" + name + ".exe"; }
std::string our_program() { return program("tavrinconfig"); }
std::string bare_tool(int entries) { return program("bench\\bare_tool") + " " + std::to_string(entries); }

void expect(bool good, const std::string& what) {
    if (!good)
        throw std::runtime_error(what);
}

/// The configuration, its groups and its entries.
void expect_items(const Program& shown, int entries) {
    const int groups = (entries + seeded::entries_per_group - 1) / seeded::entries_per_group;
    expect(e2e::send(shown.control(tree_id), TVM_GETCOUNT) == 1 + groups + entries,
           "the tree does not hold every entry");
}

HTREEITEM next(HWND tree, WPARAM relation, HTREEITEM item) {
    return reinterpret_cast<HTREEITEM>(
        e2e::send(tree, TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
}

/// The edit control of the page shown: the frame's second child.
HWND edit_of_page(HWND window) {
    for (const HWND child : e2e::children_of(window)) {
        if (const HWND help = GetWindow(child, GW_CHILD); help != nullptr && e2e::is_class(child, "Button"))
            return GetWindow(help, GW_HWNDNEXT);
    }
    throw std::runtime_error("no page is shown");
}

void change_every_value(const Program& tool) {
    const HWND tree = tool.control(tree_id);
    int number = 0;
    HTREEITEM group = next(tree, TVGN_CHILD, next(tree, TVGN_ROOT, nullptr));
    for (; group != nullptr; group = next(tree, TVGN_NEXT, group)) {
        for (HTREEITEM item = next(tree, TVGN_CHILD, group); item != nullptr;
             item = next(tree, TVGN_NEXT, item)) {
            e2e::send(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
            const std::string text = numbered(seeded::changed_format, number++);
            e2e::send(edit_of_page(tool.window()), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
        }
    }
}

} // namespace

void measure_first_windows(Samples& samples, int runs) {
    const Seed seed(50);
    expect_items(Program(our_program()), 50);
    const std::pair<const char*, std::string> programs[] = {{ours, our_program()},
                                                            {bare, program("bench\\bare_window")},
                                                            {prescribed, bare_tool(50)},
                                                            {"Wine's notepad", "notepad.exe"},
                                                            {"Wine's regedit", "regedit.exe"}};
    for (int run = 0; run < runs; ++run) {
        for (const auto& [name, command_line] : programs)
            samples.add("start to painted window, 50", name, "s", Program(command_line).start_time());
    }
}

void measure_private_bytes(Samples& samples, int runs) {
    const Seed seed(50);
    const auto add = [&](const char* name, const std::string& command_line) {
        const Program shown(command_line);
        samples.add("private bytes, idle, 50", name, "B", private_bytes(command_line));
    };
    for (int run = 0; run < runs; ++run) {
        add(ours, our_program());
        add(bare, program("bench\\bare_window"));
    }
}

void measure_start_up(Samples& samples, int runs) {
    constexpr int entries = 10'000;
    const Seed seed(entries);
    const auto add = [&](const char* name, const std::string& command_line) {
        const Program shown(command_line);
        expect_items(shown, entries);
        samples.add("start-up, 10000", name, "s", shown.start_time());
    };
    for (int run = 0; run < runs; ++run) {
        add(ours, our_program());
        add(bare, bare_tool(entries));
    }
}

void measure_ok(Samples& samples, int runs) {
    constexpr int entries = 1'000;
    const Seed seed(entries);
    const auto add = [&](const char* name, Program& tool) {
        samples.add("OK, 1000 changed values", name, "s", tool.click_and_end(ok_id));
        expect(seed.is_changed(), std::string(name) + " did not write every value");
        seed.reset_values();
    };
    for (int run = 0; run < runs; ++run) {
        Program tool(our_program());
        change_every_value(tool);
        add(ours, tool);
        Program peer(bare_tool(entries));
        add(bare, peer);
    }
}

void measure_files(Samples& samples) {
    const auto size = [](const std::string& path) {
        return static_cast<double>(std::filesystem::file_size(path));
    };
    samples.add("program file", ours, "B", size(our_program()));
    samples.add("program file", "map and exceptions", "B", size(program("bench\\bare_map")));
    samples.add("program file", "bare window", "B", size(program("bench\\bare_window")));
}

} // namespace bench
