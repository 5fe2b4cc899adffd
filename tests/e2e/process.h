#pragma once
/// A process that a test started, and its end.
#include "platform/win32.h"

#include <string>
#include <vector>

namespace e2e {

/// The folder that holds the finished programs.
std::string program_folder();
/// An environment variable; empty when it is not set.
std::string environment(const char* name);

/// A running program. Its standard output and error go to a file; the destructor ends it if it still runs.
class Process {
public:
    /// Starts `command_line`; throws std::runtime_error when that fails.
    explicit Process(const std::string& command_line);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    DWORD id() const { return information.dwProcessId; }
    HANDLE handle() const { return information.hProcess; }
    bool running() const;
    /// Waits for the end; throws std::runtime_error on a time-out.
    DWORD exit_code(int seconds);
    /// The program's output so far.
    std::string output() const;

private:
    PROCESS_INFORMATION information = {};
    std::string output_path;
};

/// Runs a program to its end and returns its output; throws unless it ends with code 0.
std::string run(const std::string& command_line);

} // namespace e2e
