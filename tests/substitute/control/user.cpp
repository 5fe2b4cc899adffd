#include "substitute/control/user.h"

#include "substitute/windows/messages.h"
#include "substitute/windows/window.h"

namespace substitute {
namespace {

void stroke(WPARAM key) {
    queue_input({WM_KEYDOWN, key, nullptr, 0});
    queue_input({WM_KEYUP, key, nullptr, 0});
}

std::size_t count_with_children(HWND handle) {
    std::size_t count = 1;
    for (const HWND child : children_of(handle))
        count += count_with_children(child);
    return count;
}

} // namespace

void press(int virtual_key, bool with_shift) {
    if (with_shift)
        queue_input({WM_KEYDOWN, static_cast<WPARAM>(VK_SHIFT), nullptr, 0});
    stroke(static_cast<WPARAM>(virtual_key));
    if (with_shift)
        queue_input({WM_KEYUP, static_cast<WPARAM>(VK_SHIFT), nullptr, 0});
}

void type(const std::string& text) {
    for (const char each : text)
        stroke(MAKEWPARAM(VK_PACKET, static_cast<unsigned char>(each)));
}

void click(HWND window) {
    const Window* clicked = window_of(window);
    const POINT size = clicked == nullptr ? POINT{0, 0} : client_size(*clicked);
    click(window, {size.x / 2, size.y / 2});
}

void click(HWND window, POINT where) {
    const LPARAM at = MAKELPARAM(where.x, where.y);
    queue_input({WM_LBUTTONDOWN, 0, window, at});
    queue_input({WM_LBUTTONUP, 0, window, at});
}

void click_frame(HWND window, WPARAM button) { queue_input({WM_NCLBUTTONDOWN, button, window, 0}); }

void then(std::function<void()> step) { queue_step(std::move(step)); }

std::size_t open_windows() {
    std::size_t count = 0;
    for (const HWND each : top_level_windows())
        count += count_with_children(each);
    return count;
}

} // namespace substitute
