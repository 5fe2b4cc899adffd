// A library that a message hook brings into the program under test. There, in the program's own thread, it
// counts the objects that the window manager shows to nobody else, and leaks one of a kind when it is asked
// to.
#include "platform/win32.h"
#include "soak/census_request.h"

#include <iterator>

namespace soak {
namespace {

/// Handles of the window manager are even indexes below a generation; without one, Wine takes any generation.
constexpr UINT_PTR first_handle = 0x0020;
constexpr UINT_PTR last_handle = 0xffef;

bool is_own_window(HWND window) {
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    return owner == GetCurrentProcessId();
}

/// The only question about an icon that makes nothing new is one that fails; so the copies it makes are
/// deleted.
bool is_icon(HICON icon) {
    ICONINFO copies = {};
    if (!GetIconInfo(icon, &copies))
        return false;
    DeleteObject(copies.hbmMask);
    if (copies.hbmColor)
        DeleteObject(copies.hbmColor);
    return true;
}

UserObjects count_user() {
    UserObjects found = {};
    for (UINT_PTR handle = first_handle; handle <= last_handle; handle += 2) {
        if (IsWindow(reinterpret_cast<HWND>(handle)))
            found.windows += is_own_window(reinterpret_cast<HWND>(handle)) ? 1 : 0;
        else if (IsMenu(reinterpret_cast<HMENU>(handle)))
            ++found.menus;
        else if (is_icon(reinterpret_cast<HICON>(handle)))
            ++found.icons;
        else if (CopyAcceleratorTableA(reinterpret_cast<HACCEL>(handle), nullptr, 0) > 0)
            ++found.accelerators;
    }
    return found;
}

void add_use(HANDLE heap, HeapUse& use) {
    PROCESS_HEAP_ENTRY entry = {};
    HeapLock(heap);
    while (HeapWalk(heap, &entry)) {
        if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) {
            ++use.blocks;
            use.bytes += entry.cbData;
        }
    }
    HeapUnlock(heap);
}

HeapUse count_heap() {
    HANDLE heaps[256];
    HeapUse use = {};
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(std::size(heaps)), heaps);
    for (DWORD index = 0; index < count && index < std::size(heaps); ++index)
        add_use(heaps[index], use);
    return use;
}

/// The same calls as for the help text of a page.
void use_text(HWND parent) {
    const HWND text =
        CreateWindowExA(0, "Static", "A text.", WS_CHILD, 0, 0, 1, 1, parent, nullptr, nullptr, nullptr);
    SendMessageA(text, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
    DestroyWindow(text);
}

constexpr int wait_window_width = 200;
constexpr int wait_window_height = 75;

/// The same calls as for the text of a wait window, in the same room: what the system loses depends on how
/// the text is wrapped before and after it has its font.
void use_lines(HWND parent, const char* text) {
    RECT frame = {};
    AdjustWindowRectEx(&frame, WS_POPUP | WS_DLGFRAME, FALSE, WS_EX_DLGMODALFRAME);
    const int width = wait_window_width - (frame.right - frame.left);
    const int height = wait_window_height - (frame.bottom - frame.top);
    const HWND lines = CreateWindowExA(0, "Edit", text, WS_CHILD | ES_READONLY | ES_MULTILINE | ES_CENTER, 0,
                                       0, width, height, parent, nullptr, nullptr, nullptr);
    SendMessageA(lines, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
    SendMessageA(lines, EM_GETLINECOUNT, 0, 0);
    DestroyWindow(lines);
}

void leak_icon() {
    constexpr BYTE bits[16 * 16 / 8] = {};
    CreateIcon(nullptr, 16, 16, 1, 1, bits, bits);
}

void answer(Request request, HWND window, void* counted) {
    switch (request) {
    case Request::count_user: *static_cast<UserObjects*>(counted) = count_user(); break;
    case Request::count_heap: *static_cast<HeapUse*>(counted) = count_heap(); break;
    case Request::use_text: use_text(window); break;
    case Request::use_test:
        use_lines(window, "Testing connection to server \"10.9.0.2\" at port 5000. Please be patient.");
        break;
    case Request::use_scan:
        use_lines(window, "Scanning for Tavrin Servers running at port 5000. Please be patient.");
        break;
    case Request::leak_window:
        // The most easily missed one: a window that no list of windows shows.
        CreateWindowExA(0, "Static", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        break;
    case Request::leak_menu: CreateMenu(); break;
    case Request::leak_icon: leak_icon(); break;
    case Request::leak_brush: CreateSolidBrush(RGB(12, 34, 56)); break;
    case Request::leak_event: CreateEventA(nullptr, FALSE, FALSE, nullptr); break;
    case Request::leak_block: HeapAlloc(GetProcessHeap(), 0, 40); break;
    }
}

} // namespace
} // namespace soak

/// The hook's procedure: sees every message that is sent to a window of the program's thread.
extern "C" __declspec(dllexport) LRESULT CALLBACK census_hook(int code, WPARAM wparam, LPARAM lparam) {
    static const UINT request = RegisterWindowMessageA(soak::request_name);
    const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(lparam);
    if (code == HC_ACTION && sent.message == request)
        soak::answer(static_cast<soak::Request>(sent.wParam), sent.hwnd,
                     reinterpret_cast<void*>(sent.lParam));
    return CallNextHookEx(nullptr, code, wparam, lparam);
}
