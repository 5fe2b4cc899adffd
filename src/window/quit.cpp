#include "window/quit.h"

#include <utility>

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
