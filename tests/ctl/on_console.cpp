/// Runs a program on a console of its own, under a code page: on_console CODE_PAGE PROGRAM [ARGUMENT...].
/// Prints the code page that the console has afterwards and, in UTF-8, what it shows.
#include "platform/win32.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

HANDLE open_screen() {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                       &inherited, OPEN_EXISTING, 0, nullptr);
}

/// Returns the exit code of a program, whose two outputs are these.
DWORD run(std::wstring command, HANDLE output, HANDLE messages, DWORD flags) {
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = output;
    start.hStdError = messages;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, flags, nullptr, nullptr, &start,
                        &process))
        return GetLastError();
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    return code;
}

/// The command line without its first words, none of which has a blank.
std::wstring after_words(int count) {
    std::wstring line = GetCommandLineW();
    for (int i = 0; i < count; ++i)
        line.erase(0, line.find_first_not_of(L' ', line.find(L' ')));
    return line;
}

/// This program once more, on a console without a window.
int run_on_console() {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return static_cast<int>(run(std::wstring(path) + L" --inside " + after_words(1),
                                GetStdHandle(STD_OUTPUT_HANDLE), GetStdHandle(STD_ERROR_HANDLE),
                                CREATE_NO_WINDOW));
}

std::string row_of(HANDLE screen, SHORT width, SHORT row) {
    std::wstring wide(static_cast<std::size_t>(width), L' ');
    DWORD count = 0;
    ReadConsoleOutputCharacterW(screen, wide.data(), static_cast<DWORD>(width), {0, row}, &count);
    wide.resize(wide.find_last_not_of(L' ') + 1);
    std::string text(wide.size() * 3, '\0');
    text.resize(static_cast<std::size_t>(
        WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), text.data(),
                            static_cast<int>(text.size()), nullptr, nullptr)));
    return text;
}

} // namespace

int main(int count, char** words) {
    if (count < 4 || std::strcmp(words[1], "--inside") != 0)
        return run_on_console();
    SetConsoleOutputCP(static_cast<UINT>(std::atoi(words[2])));
    const HANDLE screen = open_screen();
    std::printf("exit code %lu\n", run(after_words(3), screen, screen, 0));
    std::printf("code page %u\n", GetConsoleOutputCP());
    CONSOLE_SCREEN_BUFFER_INFO shown = {};
    GetConsoleScreenBufferInfo(screen, &shown);
    for (SHORT row = 0; row < shown.dwCursorPosition.Y; ++row)
        std::printf("%s\n", row_of(screen, shown.dwSize.X, row).c_str());
    return 0;
}
