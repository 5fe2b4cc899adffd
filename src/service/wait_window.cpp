#include "service/wait_window.h"

#include "window/guard.h"
#include "window/main_handle.h"
#include "window/window_class.h"

namespace {

constexpr char kClassName[] = "tavrin_service_win";
constexpr int kWidth = 200;
constexpr int kHeight = 75;
constexpr int kMessageId = 106;

void create_message(HWND window, const char* text) {
    RECT client{};
    GetClientRect(window, &client);
    const HWND message =
        CreateWindowExA(0, "Edit", "", WS_CHILD | WS_VISIBLE | ES_READONLY | ES_MULTILINE | ES_CENTER, 0, 0,
                        client.right, client.bottom, window, reinterpret_cast<HMENU>(INT_PTR{kMessageId}),
                        GetModuleHandleA(nullptr), nullptr);
    SetWindowTextA(message, text);
    SendMessageA(message, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
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
    const HWND message = GetDlgItem(window, kMessageId);
    RECT client{};
    GetClientRect(window, &client);
    const int line_height = line_height_of(message);
    const int lines = static_cast<int>(SendMessageA(message, EM_GETLINECOUNT, 0, 0));
    SetWindowPos(message, nullptr, 0, centred_text_top(client.top, client.bottom, lines, line_height),
                 client.right, lines * line_height, SWP_NOZORDER);
}

LRESULT handle(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
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

LRESULT CALLBACK wait_window_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    return guarded(
        message == WM_CREATE ? -1 : 0, [&] { return handle(window, message, wparam, lparam); },
        [&] { return DefWindowProcA(window, message, wparam, lparam); });
}

bool register_class_once() {
    const HINSTANCE instance = GetModuleHandleA(nullptr);
    WNDCLASSEXA registered{};
    registered.cbSize = sizeof registered;
    return GetClassInfoExA(instance, kClassName, &registered) ||
           register_window_class(instance, kClassName, wait_window_procedure);
}

HWND create_over_main_window(const std::string& text) {
    RECT main{};
    GetWindowRect(main_window, &main);
    const int x = main.left + (main.right - main.left - kWidth) / 2;
    const int y = main.top + (main.bottom - main.top - kHeight) / 2;
    const HWND window = CreateWindowExA(WS_EX_DLGMODALFRAME, kClassName, "Tavrin Service Control",
                                        WS_POPUP | WS_DLGFRAME, x, y, kWidth, kHeight, main_window, nullptr,
                                        GetModuleHandleA(nullptr), const_cast<char*>(text.c_str()));
    rethrow_kept();
    return window;
}

/// Wine shows what was drawn when the thread asks for a message, and the step that comes next may not ask for
/// minutes. So this asks for one that nobody sends; nothing is taken from the queue.
void show_what_is_drawn(HWND window) {
    MSG none;
    PeekMessageA(&none, window, WM_APP, WM_APP, PM_NOREMOVE);
}

/// A disabled main window does not become active in the place of a window that goes. Windows would bring
/// another program's to the front, and the boxes that follow would come up behind it.
bool is_main_window_disabled() { return main_window != nullptr && !IsWindowEnabled(main_window); }

/// Handles the order to close that was posted, and nothing else of what waits in the queue.
void handle_posted_close(HWND window) {
    MSG close{};
    if (PeekMessageA(&close, window, WM_CLOSE, WM_CLOSE, PM_REMOVE))
        DispatchMessageA(&close);
    rethrow_kept();
}

void show_failure(const char* text) { MessageBoxA(main_window, text, "Error!", MB_ICONEXCLAMATION); }

} // namespace

int centred_text_top(int client_top, int client_height, int lines, int line_height) {
    return (client_height - lines * line_height - client_top) / 2;
}

HWND open_wait_window(const std::string& text) {
    if (!register_class_once()) {
        show_failure("Window Registration Failed!");
        return nullptr;
    }
    const HWND window = create_over_main_window(text);
    if (window == nullptr) {
        show_failure("Error creating service window!");
        return nullptr;
    }
    ShowWindow(window, SW_SHOWNORMAL);
    UpdateWindow(window);
    show_what_is_drawn(window);
    return window;
}

void close_wait_window(HWND window) {
    if (window != nullptr && PostMessageA(window, WM_CLOSE, 0, 0) && !is_main_window_disabled())
        handle_posted_close(window);
}
