#pragma once
/// What the substitute and a real system do each in its own way, so that one suite runs over both.
#include "platform/win32.h"

#include <cstddef>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

/// Removes everything that earlier tests left: resets the substitute to its state at process start; on
/// Windows, removes the tests' registry keys.
void clean_system();

/// A test that begins and ends on a clean system.
class CleanSystem : public testing::Test {
protected:
    CleanSystem() { clean_system(); }
    ~CleanSystem() override { clean_system(); }
};

/// Lets scans see this machine's own networks instead of the loopback network alone, which is all that the
/// substitute shows tests by default. Only for programs that run in a network namespace of their own.
void see_machine_interfaces();

/// The windows that this test itself has open: suites that run beside it may show windows of the same class
/// on the same desktop.

/// The calling thread's top-level windows of this class, hidden ones too.
std::vector<HWND> own_windows(const char* class_name);

/// Makes a service that is stopped and cannot be started, because its program (C:\missing.exe) is missing.
void install_broken_service(const std::string& name);
void remove_service(const std::string& name);

/// Over the substitute, a wait for datagrams takes no real time if `answered`, called with the number of
/// datagrams that the program has sent, says that all answers to them were sent. Null ends this. On Windows,
/// such a wait takes its real time.
void skip_silence(std::function<bool(std::size_t sent)> answered);
