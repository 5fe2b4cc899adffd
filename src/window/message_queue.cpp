#include "window/message_queue.h"

#include "window/guard.h"
#include "window/top_level.h"

#include <utility>

namespace {

struct Range {
    UINT first;
    UINT last;
};

constexpr Range input_messages[] = {
    {WM_KEYFIRST, WM_KEYLAST},
    {WM_MOUSEFIRST, WM_MOUSELAST},
    {WM_NCMOUSEMOVE, WM_NCXBUTTONDBLCLK},
};

} // namespace

QuitAside::~QuitAside() {
    if (code_)
        PostQuitMessage(*code_);
}

bool QuitAside::take(MSG& message, HWND window, UINT first, UINT last) {
    while (PeekMessageA(&message, window, first, last, PM_REMOVE)) {
        if (message.message != WM_QUIT)
            return true;
        code_ = static_cast<int>(message.wParam);
    }
    return false;
}

bool QuitAside::take_quit() {
    const std::optional<int> before = std::exchange(code_, std::nullopt);
    MSG none{};
    take(none, nullptr, WM_QUIT, WM_QUIT);
    const bool found = code_.has_value();
    if (!found)
        code_ = before;
    return found;
}

void drop_input(HWND window) {
    // For a null window, the system would take the messages of all windows.
    if (window == nullptr)
        return;
    QuitAside quit;
    MSG dropped{};
    for (const auto& [first, last] : input_messages) {
        while (quit.take(dropped, window, first, last)) {
        }
    }
}

void dispatch_message(HWND navigated, MSG& message) {
    if (IsDialogMessageA(navigated, &message))
        return;
    TranslateMessage(&message);
    DispatchMessageA(&message);
}

void pump_one_message() {
    QuitAside quit;
    MSG message{};
    const bool waiting = quit.take(message, nullptr, 0, 0);
    // While the queue is queried, the system also handles messages that other threads send.
    rethrow_kept();
    if (waiting)
        dispatch_message(main_window, message);
    rethrow_kept();
}
