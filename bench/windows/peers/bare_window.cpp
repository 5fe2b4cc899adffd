#include "peers/bare_window.h"

#include "app/main_window_controls.h"

namespace {

const BareProgram* shown = nullptr;

HWND add(HWND window, DWORD extended_style, const char* name, const char* text, DWORD style,
         const RECT& place, int id) {
    return CreateWindowExA(extended_style, name, text, WS_CHILD | style, place.left, place.top, place.right,
                           place.bottom, window, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr,
                           nullptr);
}

void create(HWND window) {
    const HWND tree = add(window, WS_EX_CLIENTEDGE, WC_TREEVIEWA, "",
                          WS_VISIBLE | WS_GROUP | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES |
                              TVS_LINESATROOT | TVS_SHOWSELALWAYS,
                          {10, 10, 190, 140}, tree_id);
    if (shown->fill != nullptr)
        shown->fill(tree);
    const HWND buttons[] = {
        add(window, 0, "Button", "Close", WS_VISIBLE | WS_GROUP | WS_TABSTOP, {335, 160, 80, 25}, close_id),
        add(window, 0, "Button", "OK", WS_VISIBLE, {250, 160, 80, 25}, ok_id),
        add(window, 0, "Button", "Test Connection", 0, {5, 160, 120, 25}, test_connection_id)};
    for (const HWND button : buttons)
        SendMessageA(button, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
}

LRESULT command(HWND window, WORD id) {
    if (id == test_connection_id) {
        shown->test();
        return 0;
    }
    if (id == ok_id)
        shown->write();
    DestroyWindow(window);
    return 0;
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
    case WM_CREATE: create(window); return 0;
    case WM_COMMAND: return command(window, LOWORD(wparam));
    case WM_DESTROY: PostQuitMessage(0); return 0;
    default: return DefWindowProcA(window, message, wparam, lparam);
    }
}

} // namespace

int run_bare_window(HINSTANCE instance, int show_command, const BareProgram& program) {
    shown = &program;
    InitCommonControls();
    WNDCLASSA description{};
    description.lpfnWndProc = procedure;
    description.hInstance = instance;
    description.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    description.hbrBackground = reinterpret_cast<HBRUSH>(INT_PTR{COLOR_BTNFACE + 1});
    description.lpszClassName = "barewindow";
    RegisterClassA(&description);
    const HWND window = CreateWindowExA(0, "barewindow", "Bare window", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                                        CW_USEDEFAULT, 436, 229, nullptr, nullptr, instance, nullptr);
    ShowWindow(window, show_command);
    UpdateWindow(window);
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        if (!IsDialogMessageA(window, &message)) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
    }
    return static_cast<int>(message.wParam);
}
