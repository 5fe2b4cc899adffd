#include "support/windows/input.h"

#include "support/user.h"

#include <deque>

/// Each stroke is posted only after the previous one has been handled, so that it reaches the window that has
/// the focus by then. It is posted, because input that is injected into the desktop would go to any suite's
/// window that is in front.
namespace {

constexpr LPARAM first_press = 1;
constexpr LPARAM released = static_cast<LPARAM>(0xC0000001);
constexpr UINT system_key = WM_SYSKEYDOWN - WM_KEYDOWN;

std::deque<std::function<void()>> strokes;

void hold_shift(bool down) {
    BYTE keys[256] = {};
    GetKeyboardState(keys);
    keys[VK_SHIFT] = keys[VK_LSHIFT] = down ? 0x80 : 0;
    SetKeyboardState(keys);
}

/// `character`: what VK_PACKET stands for.
void post_key(UINT message, WPARAM key, wchar_t character) {
    const HWND focus = GetFocus();
    const HWND target = focus != nullptr ? focus : GetActiveWindow();
    const LPARAM state = message == WM_KEYDOWN ? first_press : released;
    PostMessageA(target, focus != nullptr ? message : message + system_key, key,
                 key == VK_PACKET ? MAKELPARAM(1, character) : state);
}

void stroke(WPARAM key, wchar_t character = 0) {
    strokes.push_back([=] { post_key(WM_KEYDOWN, key, character); });
    strokes.push_back([=] { post_key(WM_KEYUP, key, character); });
}

bool can_be_clicked(HWND window) {
    for (HWND each = window; each != nullptr; each = GetAncestor(each, GA_PARENT))
        if (each != GetDesktopWindow() && !IsWindowEnabled(each))
            return false;
    return IsWindowVisible(window);
}

POINT middle_of(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    return {client.right / 2, client.bottom / 2};
}

void post_click(HWND window, POINT where) {
    if (!can_be_clicked(window))
        return;
    PostMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(where.x, where.y));
    PostMessageA(window, WM_LBUTTONUP, 0, MAKELPARAM(where.x, where.y));
}

} // namespace

bool input::feed() {
    if (strokes.empty())
        return false;
    const auto next = std::move(strokes.front());
    strokes.pop_front();
    next();
    return true;
}

void press_key(int virtual_key, bool with_shift) {
    if (with_shift)
        strokes.push_back([] { hold_shift(true); });
    stroke(static_cast<WPARAM>(virtual_key));
    if (with_shift)
        strokes.push_back([] { hold_shift(false); });
}

void type_text(const std::string& text) {
    for (const char each : text) {
        wchar_t wide = 0;
        MultiByteToWideChar(CP_ACP, 0, &each, 1, &wide, 1);
        stroke(VK_PACKET, wide);
    }
}

void click_on(HWND window) {
    strokes.push_back([window] { post_click(window, middle_of(window)); });
}

void click_at(HWND window, POINT where) {
    strokes.push_back([window, where] { post_click(window, where); });
}
