#include "e2e/input.h"

#include "e2e/wait.h"
#include "e2e/window.h"

#include <vector>

namespace e2e {
namespace {

INPUT key_event(WORD key, WORD scan, DWORD flags) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = scan;
    input.ki.dwFlags = flags;
    return input;
}

GUITHREADINFO thread_state(HWND window) {
    GUITHREADINFO state = {};
    state.cbSize = sizeof state;
    GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &state);
    return state;
}

void send_input(std::vector<INPUT> inputs) {
    if (SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT)) != inputs.size())
        throw std::runtime_error("the system takes no input");
}

/// One event that both moves the pointer and does what `flags` say, because a move of the display's own
/// pointer could come between two events.
INPUT mouse_event_at(POINT to, DWORD flags) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    // The whole screen is 65536 wide and high.
    input.mi.dx = (to.x * 65536 + 32768) / GetSystemMetrics(SM_CXSCREEN);
    input.mi.dy = (to.y * 65536 + 32768) / GetSystemMetrics(SM_CYSCREEN);
    input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | flags;
    return input;
}

/// Moves the display's pointer as well, which would otherwise move back.
void send_mouse(POINT to, DWORD flags) {
    SetCursorPos(to.x, to.y);
    send_input({mouse_event_at(to, flags)});
}

POINT middle_of(HWND window) {
    RECT area = {};
    GetWindowRect(window, &area);
    return {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
}

/// Where the next click on a window goes: the middle, each time to the other side of it. Two quick clicks on
/// one spot are a double click, of which an edit control takes only the first for a click that wants the
/// focus.
POINT next_spot(HWND window) {
    static bool right = false;
    right = !right;
    const int aside = GetSystemMetrics(SM_CXDOUBLECLK);
    POINT spot = middle_of(window);
    spot.x += right ? aside : -aside;
    return spot;
}

/// Where the mouse button was pressed last.
POINT held_at = {};

} // namespace

void bring_to_front(HWND window) {
    SetForegroundWindow(window);
    wait_for("a window in the foreground", [window] { return is_in_front(window); });
}

bool is_in_front(HWND window) {
    return GetForegroundWindow() == window && thread_state(window).hwndActive == window;
}

void press_key(WORD key, bool shift) {
    std::vector<INPUT> inputs;
    if (shift)
        inputs.push_back(key_event(VK_SHIFT, 0, 0));
    inputs.push_back(key_event(key, 0, 0));
    inputs.push_back(key_event(key, 0, KEYEVENTF_KEYUP));
    if (shift)
        inputs.push_back(key_event(VK_SHIFT, 0, KEYEVENTF_KEYUP));
    send_input(inputs);
}

void type(const std::string& text) {
    std::vector<INPUT> inputs;
    for (const char character : text) {
        // By character, not by key: which key makes it depends on the machine's keyboard layout.
        const WORD unit = static_cast<unsigned char>(character);
        inputs.push_back(key_event(0, unit, KEYEVENTF_UNICODE));
        inputs.push_back(key_event(0, unit, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP));
    }
    send_input(inputs);
}

void hold_down(HWND window) {
    // A box that has just closed passes the activation on a moment later, which would interrupt the click.
    bring_to_front(GetAncestor(window, GA_ROOT));
    held_at = next_spot(window);
    send_mouse(held_at, MOUSEEVENTF_LEFTDOWN);
}

void hold_on() { send_mouse(held_at, 0); }

void let_go() { send_mouse(held_at, MOUSEEVENTF_LEFTUP); }

void click(HWND window) {
    hold_down(window);
    let_go();
}

void point_at(POINT spot) { send_mouse(spot, 0); }

void click_at(POINT spot) {
    send_input({mouse_event_at(spot, MOUSEEVENTF_LEFTDOWN), mouse_event_at(spot, MOUSEEVENTF_LEFTUP)});
}

void drag_corner(HWND window, POINT to) {
    RECT area = {};
    GetWindowRect(window, &area);
    send_mouse({area.right - 2, area.bottom - 2}, MOUSEEVENTF_LEFTDOWN);
    wait_for("the window to follow the mouse",
             [&] { return (thread_state(window).flags & GUI_INMOVESIZE) != 0; });
    send_mouse(to, 0);
    send_mouse(to, MOUSEEVENTF_LEFTUP);
    wait_for("the mouse to let go", [&] { return (thread_state(window).flags & GUI_INMOVESIZE) == 0; });
}

void replace_text(HWND edit, const std::string& text) {
    click(edit);
    wait_for("the focus on an edit control", [&] { return focus_of(edit) == edit; });
    // Without Shift: when the pointer enters a window, Wine releases modifiers that the display has not seen.
    press_key(VK_HOME);
    for (std::size_t count = text_of(edit).size(); count > 0; --count)
        press_key(VK_DELETE);
    type(text);
    wait_for("the typed text " + text, [&] { return text_of(edit) == text; });
}

void toggle(HWND check_box) {
    const auto state = [check_box] { return send(check_box, BM_GETCHECK); };
    const LRESULT before = state();
    click(check_box);
    wait_for("the check box to change", [&] { return state() != before; });
}

} // namespace e2e
