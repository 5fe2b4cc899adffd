#include "ctl/io/system.h"
#include "ctl/io/windows/wide.h"
#include "ctl/program.h"
#include "platform/dll_search.h"
#include "platform/win32.h"

#include <string>
#include <vector>

/// The C library would take "*" in a value for the names of files.
extern "C" {
extern int _dowildcard;
int _dowildcard = 0;
}

namespace {

/// Nobody may be asked anything: no box of the system's when a disk is missing or the program breaks off.
void ask_nobody() {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    ctl::make_binary(stdout);
    ctl::make_binary(stderr);
}

} // namespace

int wmain(int count, wchar_t** words) {
    refuse_planted_dlls();
    ask_nobody();
    std::vector<std::string> own;
    for (int i = 1; i < count; ++i)
        own.push_back(ctl::from_wide(words[i]));
    return ctl::run_program(own);
}
