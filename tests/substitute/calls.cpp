#include "substitute/calls.h"

#include "substitute/control/calls.h"
#include "substitute/kernel/kernel.h"

#include <map>
#include <thread>
#include <utility>
#include <vector>

namespace substitute {
namespace {

/// A plan for every call has nothing remaining to wait for, and stays.
constexpr int every_call = -1;

struct Plan {
    int remaining = 0;
    DWORD code = 0;
};

struct State {
    std::deque<const char*> made;
    std::map<std::string, int, std::less<>> counts;
    std::map<std::string, Plan, std::less<>> planned;
    std::map<std::string, std::function<void()>, std::less<>> steps;
    int failed = 0;
    std::string last_failed;
};

State& state() {
    static State instance;
    return instance;
}

std::vector<void (*)()>& hooks() {
    static std::vector<void (*)()> instance;
    return instance;
}

/// Calls made by a test's peers on other threads are neither counted nor failed: their order is random.
std::thread::id& watched_thread() {
    static std::thread::id instance = std::this_thread::get_id();
    return instance;
}

int& own_calls() {
    static int depth = 0;
    return depth;
}

bool is_due(int& remaining) { return remaining == every_call || (remaining > 0 && --remaining == 0); }

} // namespace

ResetHook::ResetHook(void (*hook)()) { hooks().push_back(hook); }

bool watched() { return std::this_thread::get_id() == watched_thread() && own_calls() == 0; }

OwnCalls::OwnCalls() { ++own_calls(); }
OwnCalls::~OwnCalls() { --own_calls(); }

DWORD failing(const char* function, DWORD fitting) {
    if (!watched())
        return 0;
    State& now = state();
    note(now.made, function);
    ++now.counts[function];
    if (const auto step = now.steps.extract(function); !step.empty())
        step.mapped()();
    const auto plan = now.planned.find(function);
    if (plan == now.planned.end() || !is_due(plan->second.remaining))
        return 0;
    const DWORD code = plan->second.code != 0 ? plan->second.code : fitting;
    ++now.failed;
    now.last_failed = function;
    SetLastError(code);
    return code;
}

void reset() {
    watched_thread() = std::this_thread::get_id();
    state() = State{};
    for (const auto hook : hooks())
        hook();
    SetLastError(0);
}

void fail_call(const std::string& function, int nth, DWORD code) { state().planned[function] = {nth, code}; }
void when_called(const std::string& function, std::function<void()> step) {
    state().steps[function] = std::move(step);
}
void fail_every_call(const std::string& function, DWORD code) {
    state().planned[function] = {every_call, code};
}
int failed_calls() { return state().failed; }
std::string last_failed_call() { return state().last_failed; }
std::vector<std::string> calls() { return {state().made.begin(), state().made.end()}; }
int call_count(const std::string& function) {
    const auto found = state().counts.find(function);
    return found == state().counts.end() ? 0 : found->second;
}

} // namespace substitute
