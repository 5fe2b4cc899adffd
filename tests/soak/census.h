#pragma once
/// Counts what a running program holds of the system's resources. Wine answers 0 to GetGuiResources and
/// GetProcessHandleCount about another process, so each count is taken where the system keeps it: GDI objects
/// in the table in the process' memory, kernel handles in the system's list of all handles, and the window
/// manager's objects by asking for every possible handle inside the process.
#include "e2e/tool.h"
#include "soak/census_request.h"

#include <ostream>

namespace soak {

struct Holdings {
    UserObjects user;
    int gdi;
    int kernel;
};
bool operator==(const Holdings& left, const Holdings& right);
std::ostream& operator<<(std::ostream& out, const Holdings& holdings);

/// A census of a program whose main window is open.
class Census {
public:
    /// Brings the counting library into the program; throws std::runtime_error when that fails.
    explicit Census(e2e::Tool& tool);
    ~Census();
    Census(const Census&) = delete;
    Census& operator=(const Census&) = delete;

    /// What the program holds when it is idle and has painted everything.
    Holdings count();
    /// What the program and the system's libraries in it have allocated.
    HeapUse heap_use();
    /// The number of heap blocks that the system itself leaks with every use of a text. Wine 8 leaks one:
    /// with Common Controls 6, a Static control does not free the data of its font, and an Edit control that
    /// of its words.
    long long blocks_lost_by(Request use);
    /// The number of private bytes of the process that have been written to.
    std::size_t private_bytes() const;
    /// Makes the program leak one of something.
    void leak(Request what);

private:
    void wait_until_idle() const;
    void ask(Request request, void* block = nullptr);
    /// Has the library fill in a block in the program's memory.
    template <typename Block> Block ask_for(Request request);

    HWND window;
    HANDLE process;
    HMODULE library;
    HHOOK hook;
};

} // namespace soak
