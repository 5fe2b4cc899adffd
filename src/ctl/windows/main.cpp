#include "ctl/io/system.h"
#include "ctl/io/windows/wide.h"
#include "ctl/program.h"
#include "platform/win32.h"

#include <string>
#include <vector>

/// The C library would take "*" in a value for the names of files.
extern "C" {
extern int _dowildcard;
int _dowildcard = 0;
}

namespace {

/// What a console shows is UTF-8 for as long as the program runs.
class ConsoleInUtf8 {
public:
    ConsoleInUtf8() : before_(GetConsoleOutputCP()) { SetConsoleOutputCP(CP_UTF8); }
    ConsoleInUtf8(const ConsoleInUtf8&) = delete;
    ConsoleInUtf8& operator=(const ConsoleInUtf8&) = delete;
    ~ConsoleInUtf8() { SetConsoleOutputCP(before_); }

private:
    UINT before_;
};

/// Nobody may be asked anything: no box of the system's when a disk is missing or the program breaks off.
void ask_nobody() {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    ctl::make_binary(stdout);
    ctl::make_binary(stderr);
}

} // namespace

int wmain(int count, wchar_t** words) {
    ask_nobody();
    const ConsoleInUtf8 console;
    std::vector<std::string> own;
    for (int i = 1; i < count; ++i)
        own.push_back(ctl::from_wide(words[i]));
    return ctl::run_program(own);
}
