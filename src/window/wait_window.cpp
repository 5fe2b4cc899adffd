#include "window/wait_window.h"

#include "window/boxes.h"
#include "window/controls.h"
#include "window/guard.h"
#include "window/message_queue.h"
#include "window/top_level.h"

#include <utility>

namespace {

constexpr char class_name[] = "tavrin_service_win";
constexpr int window_width = 200;
constexpr int window_height = 75;
constexpr int message_identifier = 106;

void create_message(HWND window, const char* text) {
    const RECT client = client_rectangle(window);
    create_control(window, {.window_class = "Edit",
                            .text = text,
                            .style = ES_READONLY | ES_MULTILINE | ES_CENTER,
                            .identifier = message_identifier,
                            .placement = {.width = client.right, .height = client.bottom}});
}

int line_height_of(HWND control) {
    TEXTMETRICA metrics{};
    const HDC context = GetDC(control);
    const HGDIOBJ font = reinterpret_cast<HGDIOBJ>(SendMessageA(control, WM_GETFONT, 0, 0));
    const HGDIOBJ previous = SelectObject(context, font);
    GetTextMetricsA(context, &metrics);
    SelectObject(context, previous);
    ReleaseDC(control, context);
    return static_cast<int>(metrics.tmHeight + metrics.tmExternalLeading);
}

void centre_message(HWND window) {
    const HWND message = GetDlgItem(window, message_identifier);
    const RECT client = client_rectangle(window);
    const int line_height = line_height_of(message);
    const int lines = static_cast<int>(SendMessageA(message, EM_GETLINECOUNT, 0, 0));
    place(message, {.y = centred_text_top(client.top, client.bottom, lines, line_height),
                    .width = client.right,
                    .height = lines * line_height});
}

LRESULT handle_wait_window(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
    case WM_CREATE:
        create_message(window,
                       static_cast<const char*>(reinterpret_cast<CREATESTRUCTA*>(lparam)->lpCreateParams));
        return 0;
    case WM_SIZE: centre_message(window); return 0;
    case WM_CLOSE: DestroyWindow(window); return 0;
    default: return DefWindowProcA(window, message, wparam, lparam);
    }
}

bool register_class_once() {
    const HINSTANCE instance = GetModuleHandleA(nullptr);
    WNDCLASSEXA registered{};
    registered.cbSize = sizeof registered;
    return GetClassInfoExA(instance, class_name, &registered) ||
           register_window_class(instance, class_name, guarded_procedure<handle_wait_window>);
}

HWND create_over_main_window(const std::string& text) {
    RECT main{};
    GetWindowRect(main_window, &main);
    const int x = main.left + (main.right - main.left - window_width) / 2;
    const int y = main.top + (main.bottom - main.top - window_height) / 2;
    const HWND window = CreateWindowExA(
        WS_EX_DLGMODALFRAME, class_name, "Tavrin Service Control", WS_POPUP | WS_DLGFRAME, x, y, window_width,
        window_height, main_window, nullptr, GetModuleHandleA(nullptr), const_cast<char*>(text.c_str()));
    rethrow_kept();
    return window;
}

/// Wine shows what was drawn only when the thread asks for a message, and the next step may not do so for
/// minutes. So this asks for a message that is never sent, and removes nothing from the queue.
void show_what_is_drawn(HWND window) {
    MSG none;
    PeekMessageA(&none, window, WM_APP, WM_APP, PM_NOREMOVE);
}

/// A disabled main window does not become active when another window closes. Windows would then activate
/// another program's window, and the following boxes would open behind it.
bool is_main_window_disabled() { return main_window != nullptr && !IsWindowEnabled(main_window); }

/// Handles the posted request to close, and no other message in the queue.
void handle_posted_close(HWND window) {
    QuitAside quit;
    MSG close{};
    if (quit.take(close, window, WM_CLOSE, WM_CLOSE))
        DispatchMessageA(&close);
}

void ask_to_close(HWND window) {
    if (window != nullptr && PostMessageA(window, WM_CLOSE, 0, 0) && !is_main_window_disabled())
        handle_posted_close(window);
}

HWND tell_failure(const char* text) {
    show_box({.owner = main_window, .text = text, .caption = "Error!", .style = MB_ICONEXCLAMATION});
    return nullptr;
}

/// Null after a failure, which was shown to the user.
HWND open(const std::string& text) {
    if (!register_class_once())
        return tell_failure("Window Registration Failed!");
    const HWND window = create_over_main_window(text);
    if (window == nullptr)
        return tell_failure("Error creating service window!");
    ShowWindow(window, SW_SHOWNORMAL);
    UpdateWindow(window);
    show_what_is_drawn(window);
    return window;
}

} // namespace

int centred_text_top(int client_top, int client_height, int lines, int line_height) {
    return (client_height - lines * line_height - client_top) / 2;
}

WaitWindow::WaitWindow(const std::string& text) : window_(open(text)) {}

WaitWindow::~WaitWindow() { ask_to_close(window_); }

void WaitWindow::drop_waiting_input() const {
    drop_input(window_);
    drop_input(main_window);
}

void WaitWindow::close() {
    ask_to_close(std::exchange(window_, nullptr));
    // The focus is back in the main window, and so are the keys that were typed meanwhile.
    drop_waiting_input();
    rethrow_kept();
}
