#include "e2e/process.h"

#include "e2e/wait.h"

#include <fstream>
#include <iterator>

namespace e2e {
namespace {

std::string temporary_path() {
    char folder[MAX_PATH];
    char path[MAX_PATH];
    GetTempPathA(sizeof folder, folder);
    GetTempFileNameA(folder, "e2e", 0, path);
    return path;
}

HANDLE open_for_child(const std::string& path) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                       &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_TEMPORARY, nullptr);
}

} // namespace

std::string program_folder() {
    char path[MAX_PATH];
    GetModuleFileNameA(nullptr, path, sizeof path);
    std::string folder = path;
    folder.erase(folder.rfind('\\'));
    return folder.erase(folder.rfind('\\'));
}

std::string environment(const char* name) {
    char value[1024];
    return GetEnvironmentVariableA(name, value, sizeof value) ? value : "";
}

Process::Process(const std::string& command_line) : output_path(temporary_path()) {
    const HANDLE output = open_for_child(output_path);
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = startup.hStdError = output;
    std::string line = command_line;
    const BOOL started = CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                        &startup, &information);
    CloseHandle(output);
    if (!started)
        throw std::runtime_error("cannot start " + command_line);
}

Process::~Process() {
    if (running())
        TerminateProcess(information.hProcess, 99);
    WaitForSingleObject(information.hProcess, limit * 1000);
    CloseHandle(information.hThread);
    CloseHandle(information.hProcess);
    DeleteFileA(output_path.c_str());
}

bool Process::running() const { return WaitForSingleObject(information.hProcess, 0) == WAIT_TIMEOUT; }

DWORD Process::exit_code(int seconds) {
    wait_for(
        "the end of a program", [&] { return !running(); }, seconds);
    DWORD code = 0;
    GetExitCodeProcess(information.hProcess, &code);
    return code;
}

std::string Process::output() const {
    std::ifstream file(output_path);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string run(const std::string& command_line) {
    Process process(command_line);
    const DWORD code = process.exit_code(120);
    if (code != 0)
        throw std::runtime_error(command_line + " ended with code " + std::to_string(code) + ": " +
                                 process.output());
    return process.output();
}

} // namespace e2e
