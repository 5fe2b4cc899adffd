#include "substitute/windows/messages.h"

#include "substitute/calls.h"
#include "substitute/control/calls.h"
#include "substitute/control/user.h"
#include "substitute/controls/controls.h"
#include "substitute/kernel/kernel.h"
#include "substitute/windows/hooks.h"
#include "substitute/windows/window.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <optional>
#include <utility>

namespace substitute {
namespace {

constexpr short key_is_down = static_cast<short>(0x8000);
constexpr UINT system_key = 4;

struct Queue {
    std::deque<MSG> posted;
    std::deque<Input> input;
    std::deque<std::function<void()>> steps;
    std::optional<int> quit;
    std::array<bool, 256> key_down{};
    std::function<void()> when_peeked;
    std::function<void(const char*)> on_delivery;
};

Queue& queue() {
    static Queue instance;
    return instance;
}

const ResetHook reset_hook([] { queue() = Queue{}; });

struct Filter {
    HWND window;
    UINT first;
    UINT last;

    bool takes(const MSG& message) const {
        return takes_window(message.hwnd) && takes_number(message.message);
    }
    bool takes_window(HWND handle) const {
        return window == nullptr || handle == window || IsChild(window, handle);
    }
    bool takes_number(UINT number) const {
        return (first == 0 && last == 0) || (number >= first && number <= last);
    }
};

bool is_key_message(UINT number) { return number >= WM_KEYFIRST && number <= WM_KEYLAST; }

/// Keys go to the window with the focus; without one the active window gets them as system keys.
MSG message_of(const Input& input) {
    const bool is_key = is_key_message(input.message);
    const HWND focus = GetFocus();
    const HWND target = !is_key ? input.clicked : focus != nullptr ? focus : GetActiveWindow();
    const UINT number = is_key && focus == nullptr ? input.message + system_key : input.message;
    return {target, number, input.wparam, is_key ? 1 : input.where, 0, {0, 0}};
}

bool can_be_clicked(HWND handle) { return is_enabled_throughout(handle) && IsWindowVisible(handle); }

bool reaches(const MSG& message) {
    return is_key_message(message.message) ? IsWindow(message.hwnd) != FALSE : can_be_clicked(message.hwnd);
}

/// A click first brings its window to the front.
void note_input(const Input& input) {
    const bool clicks = input.message == WM_LBUTTONDOWN || input.message == WM_NCLBUTTONDOWN;
    if (clicks && can_be_clicked(input.clicked))
        activate_by_click(input.clicked);
    if (input.message == WM_KEYDOWN || input.message == WM_KEYUP)
        queue().key_down[input.wparam & 0xFF] = input.message == WM_KEYDOWN;
}

bool take_posted(const Filter& filter, bool remove, MSG& message) {
    auto& posted = queue().posted;
    const auto found =
        std::find_if(posted.begin(), posted.end(), [&](const MSG& each) { return filter.takes(each); });
    if (found == posted.end())
        return false;
    message = *found;
    if (remove)
        posted.erase(found);
    return true;
}

/// No filter keeps it out.
bool take_quit(bool remove, MSG& message) {
    if (!queue().quit)
        return false;
    message = {nullptr, WM_QUIT, static_cast<WPARAM>(*queue().quit), 0, 0, {0, 0}};
    if (remove)
        queue().quit.reset();
    return true;
}

/// Whether an open list takes the next click, button down and up, for itself.
bool list_takes_click() {
    auto& input = queue().input;
    if (input.empty() || input.front().message != WM_LBUTTONDOWN || input.front().clicked == GetFocus() ||
        !leave_open_list(GetFocus()))
        return false;
    input.pop_front();
    if (!input.empty() && input.front().message == WM_LBUTTONUP)
        input.pop_front();
    return true;
}

/// The first input for a window that the filter accepts. Input that reaches no window is dropped.
bool take_input(const Filter& filter, bool remove, MSG& message) {
    auto& input = queue().input;
    for (std::size_t at = 0; at < input.size();) {
        const Input next = input[at];
        message = message_of(next);
        const bool taken = reaches(message) && filter.takes(message);
        if (reaches(message) && !taken) {
            ++at;
            continue;
        }
        if (remove || !taken) {
            input.erase(input.begin() + static_cast<std::ptrdiff_t>(at));
            note_input(next);
        }
        if (taken)
            return true;
    }
    return false;
}

bool take(const Filter& filter, bool remove, MSG& message) {
    do {
        if (take_posted(filter, remove, message) || take_quit(remove, message))
            return true;
        // Messages that are posted while the list closes come before the next input.
    } while (list_takes_click());
    return take_input(filter, remove, message);
}

[[noreturn]] void give_up() {
    std::fputs(
        "GetMessageA: the queue is empty, no scripted step of the user is left, and so the program would "
        "wait for ever\n",
        stderr);
    std::abort();
}

void run_next_step() {
    if (queue().steps.empty())
        give_up();
    const auto step = std::move(queue().steps.front());
    queue().steps.pop_front();
    step();
}

WPARAM character_of(WPARAM key) {
    switch (static_cast<int>(LOWORD(key))) {
    case VK_PACKET: return HIWORD(key);
    case VK_SPACE: return ' ';
    case VK_TAB: return '\t';
    case VK_RETURN: return '\r';
    case VK_ESCAPE: return 0x1B;
    case VK_BACK: return '\b';
    default: return 0;
    }
}

} // namespace

void queue_input(const Input& input) { queue().input.push_back(input); }
void queue_step(std::function<void()> step) { queue().steps.push_back(std::move(step)); }
void when_peeked(std::function<void()> step) { queue().when_peeked = std::move(step); }
void on_delivery(std::function<void(const char*)> step) { queue().on_delivery = std::move(step); }

/// Messages that the step itself causes are not deliveries.
void deliver(const char* function) {
    if (!queue().on_delivery || !watched())
        return;
    const OwnCalls own;
    const auto step = queue().on_delivery; // it may set another one
    step(function);
}

void forget_steps() { queue().steps.clear(); }
std::size_t steps_left() { return queue().steps.size(); }
bool queue_is_empty() { return queue().posted.empty() && !quit_waits() && queue().input.empty(); }
bool input_waits() { return !queue().input.empty(); }
bool quit_waits() { return queue().quit.has_value(); }

void dispatch_posted() {
    MSG message{};
    while (take_posted({nullptr, 0, 0}, true, message)) {
        if (!filter_takes(message))
            DispatchMessageA(&message);
    }
}

void dispatch_all() {
    MSG message{};
    while (take({nullptr, 0, 0}, true, message) && message.message != WM_QUIT) {
        if (filter_takes(message))
            continue;
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    if (message.message == WM_QUIT)
        PostQuitMessage(static_cast<int>(message.wParam));
}

void drop_messages_of(HWND handle) {
    std::erase_if(queue().posted, [handle](const MSG& each) { return each.hwnd == handle; });
}

} // namespace substitute

using namespace substitute;

LRESULT SendMessageA(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    const Window* window = window_of(handle);
    return window == nullptr ? 0 : window->procedure(handle, message, wparam, lparam);
}

BOOL PostMessageA(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    if (failing("PostMessageA", ERROR_INVALID_WINDOW_HANDLE) ||
        (handle != nullptr && window_of(handle) == nullptr))
        return FALSE;
    queue().posted.push_back({handle, message, wparam, lparam, 0, {0, 0}});
    return TRUE;
}

BOOL PostThreadMessageA(DWORD thread, UINT message, WPARAM wparam, LPARAM lparam) {
    if (failing("PostThreadMessageA", ERROR_INVALID_THREAD_ID))
        return FALSE;
    if (thread != GetCurrentThreadId())
        return refuse(ERROR_INVALID_THREAD_ID);
    if (message == WM_QUIT) {
        PostQuitMessage(static_cast<int>(wparam));
        return TRUE;
    }
    queue().posted.push_back({nullptr, message, wparam, lparam, 0, {0, 0}});
    return TRUE;
}

void PostQuitMessage(int exit_code) { queue().quit = exit_code; }

BOOL GetMessageA(LPMSG message, HWND handle, UINT first, UINT last) {
    if (failing("GetMessageA", ERROR_INVALID_WINDOW_HANDLE) ||
        (handle != nullptr && window_of(handle) == nullptr))
        return -1;
    deliver("GetMessageA");
    while (!take({handle, first, last}, true, *message)) {
        run_next_step();
        deliver("GetMessageA");
    }
    return message->message != WM_QUIT;
}

BOOL PeekMessageA(LPMSG message, HWND handle, UINT first, UINT last, UINT remove) {
    if (failing("PeekMessageA", ERROR_INVALID_WINDOW_HANDLE))
        return FALSE;
    if (queue().when_peeked)
        std::exchange(queue().when_peeked, nullptr)();
    deliver("PeekMessageA");
    return take({handle, first, last}, (remove & PM_REMOVE) != 0, *message);
}

BOOL TranslateMessage(const MSG* message) {
    if (message->message != WM_KEYDOWN)
        return FALSE;
    if (const WPARAM character = character_of(message->wParam); character != 0)
        queue().posted.push_back({message->hwnd, WM_CHAR, character, message->lParam, 0, {0, 0}});
    return TRUE;
}

LRESULT DispatchMessageA(const MSG* message) {
    return message->hwnd == nullptr
               ? 0
               : SendMessageA(message->hwnd, message->message, message->wParam, message->lParam);
}

short GetKeyState(int key) {
    return queue().key_down[static_cast<unsigned>(key) & 0xFF] ? key_is_down : short{0};
}
