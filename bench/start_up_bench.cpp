// The cost of the window with few and with many entries, over the substitute: start-up as a whole, one key
// press in an edit control, one switch between two pages. The substitute does no drawing: what is measured is
// the program.
#include "app/control_ids.h"
#include "app/start_up.h"
#include "platform/main_window.h"
#include "platform/substitute/control.h"
#include "spec/configurations.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

namespace {

constexpr char kKey[] = "SOFTWARE\\Tavrin\\Bench";
constexpr int kEntriesPerGroup = 100;

void set_text(const char* key, const std::string& name, const std::string& text) {
    HKEY opened = nullptr;
    RegCreateKeyExA(HKEY_LOCAL_MACHINE, key, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &opened, nullptr);
    RegSetValueExA(opened, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                   static_cast<DWORD>(text.size() + 1));
    RegCloseKey(opened);
}

/// A machine whose registry lists one spec file with `entries` text entries, every one with a value.
class Machine {
public:
    explicit Machine(int entries) : path_(std::filesystem::temp_directory_path() / "tavrin_bench.spec") {
        substitute::reset();
        substitute::record_calls(false);
        std::ofstream file(path_, std::ios::binary);
        file << kKey << "\nBench\n";
        for (int i = 0; i < entries; ++i) {
            const std::string number = std::to_string(i);
            if (i % kEntriesPerGroup == 0)
                file << "!Group " << number << "\n";
            file << "$Entry " << number << "\nValue" << number << "\nWhat the entry is for.\nString\n";
            set_text(kKey, "Value" + number, "text " + number);
        }
        set_text("SOFTWARE\\Tavrin\\TRConfig", "Bench", path_.string());
    }
    ~Machine() {
        configurations.clear();
        main_window = nullptr;
        std::filesystem::remove(path_);
    }

    /// Runs the program; `step` is what the user does before closing the window.
    void run(const std::function<void()>& step) {
        substitute::then(step);
        substitute::then([] { PostMessageA(main_window, WM_CLOSE, 0, 0); });
        run_program(nullptr, SW_SHOWNORMAL);
    }

private:
    std::filesystem::path path_;
};

void start_up(benchmark::State& state) {
    for (auto _ : state) {
        Machine machine(static_cast<int>(state.range(0)));
        const auto begin = std::chrono::steady_clock::now();
        machine.run([&] {
            const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;
            state.SetIterationTime(elapsed.count());
        });
    }
    state.counters["per entry"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

HTREEITEM tree_item(WPARAM which, HTREEITEM from) {
    return reinterpret_cast<HTREEITEM>(SendMessageA(GetDlgItem(main_window, kTreeId), TVM_GETNEXTITEM, which,
                                                    reinterpret_cast<LPARAM>(from)));
}

void select(HTREEITEM item) {
    SendMessageA(GetDlgItem(main_window, kTreeId), TVM_SELECTITEM, TVGN_CARET,
                 reinterpret_cast<LPARAM>(item));
}

void handle_messages() {
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageA(&message);
}

HTREEITEM first_entry() {
    return tree_item(TVGN_CHILD, tree_item(TVGN_CHILD, tree_item(TVGN_ROOT, nullptr)));
}

/// The edit control of the page that is shown: the page is the main window's last child, and holds the help
/// text first.
HWND shown_edit() {
    const HWND page = GetWindow(GetWindow(main_window, GW_CHILD), GW_HWNDLAST);
    return GetWindow(GetWindow(page, GW_CHILD), GW_HWNDNEXT);
}

void key_press(benchmark::State& state) {
    Machine machine(static_cast<int>(state.range(0)));
    machine.run([&] {
        select(first_entry());
        const HWND box = shown_edit();
        for (auto _ : state) {
            SendMessageA(box, EM_SETSEL, 0, -1);
            SendMessageA(box, WM_CHAR, 'x', 0);
            handle_messages();
        }
    });
}

void page_switch(benchmark::State& state) {
    Machine machine(static_cast<int>(state.range(0)));
    machine.run([&] {
        const HTREEITEM pages[] = {first_entry(), tree_item(TVGN_NEXT, first_entry())};
        std::size_t next = 0;
        for (auto _ : state) {
            select(pages[next ^= 1]);
            handle_messages();
        }
    });
}

BENCHMARK(start_up)->Arg(1'000)->Arg(10'000)->Arg(100'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(key_press)->Arg(10)->Arg(100'000);
BENCHMARK(page_switch)->Arg(10)->Arg(100'000);

} // namespace

BENCHMARK_MAIN();
