#include "window/input.h"

#include "window/quit.h"

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

void drop_input(HWND window) {
    // With a null window the system would take the messages of all.
    if (window == nullptr)
        return;
    QuitAside quit;
    MSG dropped{};
    for (const auto& [first, last] : input_messages) {
        while (quit.take(dropped, window, first, last)) {
        }
    }
}
