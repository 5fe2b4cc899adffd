#include "support/user.h"

#include "support/pump.h"
#include "support/windows/input.h"
#include "window/guard.h"

#include <cstdio>
#include <cstdlib>
#include <deque>

/// A timer of the thread fires in every loop of the program, and only when nothing else waits in the queue:
/// then the user acts.
namespace {

constexpr UINT tick_milliseconds = 10;
/// This many idle ticks in a row mean that the program waits forever.
constexpr int patience = 3000;

std::deque<std::function<void()>> steps;
UINT_PTR timer = 0;
int idle_ticks = 0;
bool in_step = false;

bool box_is_open() {
    const HWND active = GetActiveWindow();
    char name[32] = "";
    return active != nullptr && GetClassNameA(active, name, sizeof name) > 0 && std::string(name) == "#32770";
}

void run_next_step() {
    const auto step = std::move(steps.front());
    steps.pop_front();
    in_step = true;
    try {
        step();
    } catch (...) {
        keep_and_end_waits();
    }
    in_step = false;
}

void act() {
    if (input::feed())
        return;
    if (!steps.empty())
        return run_next_step();
    if (++idle_ticks < patience)
        return;
    std::fputs("the user has no more steps, and the program still waits\n", stderr);
    std::abort();
}

void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD) {
    if (!in_step && !box_is_open())
        act();
}

} // namespace

UserSteps::UserSteps() {
    idle_ticks = 0;
    timer = SetTimer(nullptr, 0, tick_milliseconds, tick);
}

UserSteps::~UserSteps() {
    KillTimer(nullptr, timer);
    steps.clear();
}

void UserSteps::then(std::function<void()> step) { steps.push_back(std::move(step)); }
std::size_t UserSteps::left() const { return steps.size(); }

/// Timer messages are left alone: they would run the user's steps.
void pump_messages() {
    MSG message{};
    do {
        while (PeekMessageA(&message, nullptr, 0, WM_TIMER - 1, PM_REMOVE) ||
               PeekMessageA(&message, nullptr, WM_TIMER + 1, 0xFFFFFFFF, PM_REMOVE))
            handle_message(message);
    } while (input::feed());
}
