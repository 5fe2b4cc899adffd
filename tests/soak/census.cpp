#include "soak/census.h"

#include "e2e/wait.h"
#include "e2e/window.h"

#include <psapi.h>
#include <stdexcept>
#include <winternl.h>

namespace soak {
namespace {

/// One entry of the table of GDI objects that every process maps.
struct GdiEntry {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type; ///< 0: free
    std::uint8_t flags;
    std::uint64_t user_data;
};
constexpr std::size_t gdi_entries = 0x4000;
/// Where a process' environment block holds the table's address.
constexpr std::size_t gdi_table_offset = 0xf8;

constexpr auto too_short = static_cast<NTSTATUS>(0xC0000004);

void check(bool done, const char* what) {
    if (!done)
        throw std::runtime_error(std::string("the census cannot ") + what);
}

template <typename T> void read(HANDLE process, const void* from, T* into, std::size_t count = 1) {
    check(ReadProcessMemory(process, from, into, count * sizeof(T), nullptr) != FALSE,
          "read the program's memory");
}

int count_gdi_objects(HANDLE process) {
    PROCESS_BASIC_INFORMATION information = {};
    check(NtQueryInformationProcess(process, ProcessBasicInformation, &information, sizeof information,
                                    nullptr) == 0,
          "find the program's environment block");
    const GdiEntry* table = nullptr;
    read(process, reinterpret_cast<const char*>(information.PebBaseAddress) + gdi_table_offset, &table);
    std::vector<GdiEntry> entries(gdi_entries);
    read(process, table, entries.data(), entries.size());
    int count = 0;
    for (const GdiEntry& entry : entries)
        count += entry.type != 0 ? 1 : 0;
    return count;
}

int count_kernel_handles(DWORD process) {
    std::vector<std::uint64_t> room(1 << 16);
    const auto ask = [&] {
        return NtQuerySystemInformation(SystemHandleInformation, room.data(),
                                        static_cast<ULONG>(room.size() * sizeof room[0]), nullptr);
    };
    NTSTATUS status = 0;
    while ((status = ask()) == too_short)
        room.resize(room.size() * 2);
    check(status == 0, "list the system's handles");
    const auto& list = *reinterpret_cast<const SYSTEM_HANDLE_INFORMATION*>(room.data());
    int count = 0;
    for (ULONG index = 0; index < list.Count; ++index)
        count += list.Handle[index].OwnerPid == process ? 1 : 0;
    return count;
}

} // namespace

bool operator==(const Holdings& left, const Holdings& right) {
    return left.user.windows == right.user.windows && left.user.menus == right.user.menus &&
           left.user.icons == right.user.icons && left.user.accelerators == right.user.accelerators &&
           left.gdi == right.gdi && left.kernel == right.kernel;
}

std::ostream& operator<<(std::ostream& out, const Holdings& holdings) {
    return out << holdings.user.windows << " windows, " << holdings.user.menus << " menus, "
               << holdings.user.icons << " icons, " << holdings.user.accelerators << " accelerators, "
               << holdings.gdi << " GDI objects, " << holdings.kernel << " kernel handles";
}

Census::Census(e2e::Tool& tool)
    : window(tool.window()), process(tool.process_handle()),
      library(LoadLibraryA((e2e::program_folder() + "\\tests\\census_library.dll").c_str())) {
    check(library != nullptr, "load its library");
    const auto procedure =
        reinterpret_cast<HOOKPROC>(reinterpret_cast<void*>(GetProcAddress(library, "census_hook")));
    hook = SetWindowsHookExA(WH_CALLWNDPROC, procedure, library, GetWindowThreadProcessId(window, nullptr));
    check(hook != nullptr, "set its hook");
}

Census::~Census() {
    UnhookWindowsHookEx(hook);
    FreeLibrary(library);
}

void Census::ask(Request request, void* block) {
    static const UINT message = RegisterWindowMessageA(request_name);
    e2e::send(window, message, static_cast<WPARAM>(request), reinterpret_cast<LPARAM>(block));
}

template <typename Block> Block Census::ask_for(Request request) {
    Block counted = {};
    void* const block = VirtualAllocEx(process, nullptr, sizeof counted, MEM_COMMIT, PAGE_READWRITE);
    check(block != nullptr, "find room in the program's memory");
    ask(request, block);
    read(process, block, &counted);
    VirtualFreeEx(process, block, 0, MEM_RELEASE);
    return counted;
}

void Census::wait_until_idle() const {
    e2e::wait_for("everything to be painted", [&] { return e2e::is_painted(window); });
    e2e::send(window, WM_NULL); // answered only after the last painting has ended
}

Holdings Census::count() {
    wait_until_idle();
    const auto user = ask_for<UserObjects>(Request::count_user);
    check(user.windows > 0, "get an answer from its library");
    return {user, count_gdi_objects(process), count_kernel_handles(GetProcessId(process))};
}

HeapUse Census::heap_use() {
    wait_until_idle();
    return ask_for<HeapUse>(Request::count_heap);
}

long long Census::blocks_lost_by(Request use) {
    constexpr int repeats = 100;
    const auto use_often = [&] {
        for (int time = 0; time < repeats; ++time)
            ask(use);
    };
    use_often(); // what the first ones allocate stays
    const HeapUse before = heap_use();
    use_often();
    return (heap_use().blocks - before.blocks + repeats / 2) / repeats;
}

std::size_t Census::private_bytes() const {
    PROCESS_MEMORY_COUNTERS counters = {};
    check(GetProcessMemoryInfo(process, &counters, sizeof counters) != FALSE, "ask for the memory in use");
    // Wine does not fill in PrivateUsage; this is the same amount without pages that were never written to.
    return counters.PagefileUsage;
}

void Census::leak(Request what) { ask(what); }

} // namespace soak
