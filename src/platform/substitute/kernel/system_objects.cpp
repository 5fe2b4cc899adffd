#include "platform/substitute/calls.h"
#include "platform/substitute/kernel/kernel.h"
#include "platform/substitute/windows/user.h"

/// Modules, icons, cursors, fonts and device contexts: the program only hands their handles on.
namespace {

template <typename Handle> Handle made_up(ULONG_PTR value) { return reinterpret_cast<Handle>(value); }

constexpr ULONG_PTR kModule = 0x140000000;
constexpr ULONG_PTR kIcon = 0x20001;
constexpr ULONG_PTR kCursor = 0x20003;
constexpr ULONG_PTR kContext = 0x30001;
constexpr ULONG_PTR kStockObjects = 0x40000;
/// The measures that the stock GUI font has at 96 dots an inch.
constexpr TEXTMETRICA kGuiFont{13, 11, 2, 2, 0, 5};

HGDIOBJ selected = made_up<HGDIOBJ>(kStockObjects);

} // namespace

HMODULE GetModuleHandleA(LPCSTR name) {
    if (substitute::failing("GetModuleHandleA", ERROR_MOD_NOT_FOUND))
        return nullptr;
    return name == nullptr ? made_up<HMODULE>(kModule) : nullptr;
}

HICON LoadIconA(HINSTANCE, LPCSTR) {
    return substitute::failing("LoadIconA", ERROR_RESOURCE_NAME_NOT_FOUND) ? nullptr : made_up<HICON>(kIcon);
}

HCURSOR LoadCursorA(HINSTANCE, LPCSTR) {
    return substitute::failing("LoadCursorA", ERROR_RESOURCE_NAME_NOT_FOUND) ? nullptr
                                                                             : made_up<HCURSOR>(kCursor);
}

HGDIOBJ GetStockObject(int object) {
    if (substitute::failing("GetStockObject", ERROR_INVALID_HANDLE))
        return nullptr;
    return made_up<HGDIOBJ>(kStockObjects + static_cast<ULONG_PTR>(object));
}

HDC GetDC(HWND) {
    return substitute::failing("GetDC", ERROR_INVALID_HANDLE) ? nullptr : made_up<HDC>(kContext);
}
int ReleaseDC(HWND, HDC context) {
    return !substitute::failing("ReleaseDC", ERROR_INVALID_HANDLE) && context == made_up<HDC>(kContext) ? 1
                                                                                                        : 0;
}

HGDIOBJ SelectObject(HDC, HGDIOBJ object) {
    if (substitute::failing("SelectObject", ERROR_INVALID_HANDLE))
        return nullptr;
    const HGDIOBJ before = selected;
    selected = object;
    return before;
}

BOOL GetTextMetricsA(HDC, LPTEXTMETRICA metrics) {
    if (substitute::failing("GetTextMetricsA", ERROR_INVALID_HANDLE))
        return FALSE;
    *metrics = kGuiFont;
    return TRUE;
}
