#pragma once
/// How a test watches and fails calls into the substitute. Only calls of the thread that called reset()
/// count.
#include "substitute/types.h"

#include <functional>
#include <string>
#include <vector>

namespace substitute {

/// Everything back to the state at process start: no windows, keys, services, scripts or planned failures.
void reset();

/// Makes the `nth` call of `function` from now on fail (1 is the next), with `code` or, when 0, a fitting
/// one.
void fail_call(const std::string& function, int nth = 1, DWORD code = 0);
/// Makes every call of `function` from now on fail with `code`.
void fail_every_call(const std::string& function, DWORD code);
/// Runs once, when the program next calls `function`, before that does anything.
void when_called(const std::string& function, std::function<void()> step);
/// How many calls were made to fail since reset(), and which function the last of them was; empty when none.
int failed_calls();
std::string last_failed_call();

/// While one lives, calls are those of the test itself, not of the program that it watches: they are neither
/// counted nor failed.
class OwnCalls {
public:
    OwnCalls();
    OwnCalls(const OwnCalls&) = delete;
    OwnCalls& operator=(const OwnCalls&) = delete;
    ~OwnCalls();
};

/// Names of the functions called since reset(), in order; of more than 100,000 the last ones.
std::vector<std::string> calls();
/// How often `function` was called since reset().
int call_count(const std::string& function);

} // namespace substitute
