#include "ctl/io/system.h"
#include "ctl/io/windows/encoding.h"
#include "ctl/program.h"
#include "platform/dll_search.h"
#include "platform/win32.h"

#include <string>
#include <vector>

/// Keeps the C library from replacing a "*" in a value with the names of files.
extern "C" {
extern int _dowildcard;
int _dowildcard = 0;
}

namespace {

/// Keeps the system from showing a box if a disk is missing or the program crashes.
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
    return static_cast<int>(ctl::run_program(own));
}
