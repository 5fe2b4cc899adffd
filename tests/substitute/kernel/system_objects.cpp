#include "substitute/calls.h"
#include "substitute/kernel/kernel.h"
#include "substitute/windows/user.h"

#include <algorithm>
#include <deque>
#include <string_view>

/// Modules, icons, cursors, fonts and device contexts: the program only passes their handles on. Only filled
/// rectangles are recorded.
namespace {

template <typename Handle> Handle made_up(ULONG_PTR value) { return reinterpret_cast<Handle>(value); }

constexpr ULONG_PTR module_handle = 0x140000000;
constexpr ULONG_PTR icon_handle = 0x20001;
constexpr ULONG_PTR cursor_handle = 0x20003;
constexpr ULONG_PTR device_context = 0x30001;
constexpr ULONG_PTR stock_objects = 0x40000;
/// In pixels, at 96 dots an inch: the width of a small icon, the measures of the stock GUI font, and those of
/// the font that a context has at first.
constexpr int small_icon = 16;
constexpr TEXTMETRICA gui_font{13, 11, 2, 2, 0, 5};
constexpr TEXTMETRICA system_font{16, 13, 3, 3, 0, 7};

/// What the program's resources hold.
bool is_own_picture(LPCSTR name) { return std::string_view(name) == "tavrin"; }

HGDIOBJ selected = made_up<HGDIOBJ>(stock_objects);

struct Filled {
    RECT area;
    COLORREF colour;

    bool covers(int x, int y) const {
        return x >= area.left && x < area.right && y >= area.top && y < area.bottom;
    }
};
/// In the one device context, since it was handed out.
std::deque<Filled> filled;

/// A brush can be given as the number of a system colour, plus one.
COLORREF colour_of(HBRUSH brush) {
    return GetSysColor(static_cast<int>(reinterpret_cast<ULONG_PTR>(brush)) - 1);
}

} // namespace

HMODULE GetModuleHandleA(LPCSTR name) {
    if (substitute::failing("GetModuleHandleA", ERROR_MOD_NOT_FOUND))
        return nullptr;
    return name == nullptr ? made_up<HMODULE>(module_handle) : nullptr;
}

HICON LoadIconA(HINSTANCE, LPCSTR name) {
    if (substitute::failing("LoadIconA", ERROR_RESOURCE_NAME_NOT_FOUND) || !is_own_picture(name))
        return nullptr;
    return made_up<HICON>(icon_handle);
}

/// A picture of another size is another picture.
HANDLE LoadImageA(HINSTANCE, LPCSTR name, UINT kind, int width, int height, UINT flags) {
    const bool is_icon = kind == IMAGE_ICON && width == height && flags == LR_DEFAULTCOLOR;
    if (substitute::failing("LoadImageA", ERROR_RESOURCE_NAME_NOT_FOUND) || !is_icon || !is_own_picture(name))
        return nullptr;
    return made_up<HANDLE>(icon_handle + (static_cast<ULONG_PTR>(width) << 20));
}

int GetSystemMetrics(int measure) {
    if (substitute::failing("GetSystemMetrics", ERROR_INVALID_PARAMETER))
        return 0;
    return measure == SM_CXSMICON || measure == SM_CYSMICON ? small_icon : 0;
}

/// The substitute has no ghost windows.
void DisableProcessWindowsGhosting() { substitute::failing("DisableProcessWindowsGhosting", 0); }

HCURSOR LoadCursorA(HINSTANCE module, LPCSTR name) {
    if (substitute::failing("LoadCursorA", ERROR_RESOURCE_NAME_NOT_FOUND))
        return nullptr;
    return module == nullptr && name == IDC_ARROW ? made_up<HCURSOR>(cursor_handle) : nullptr;
}

HGDIOBJ GetStockObject(int object) {
    if (substitute::failing("GetStockObject", ERROR_INVALID_HANDLE))
        return nullptr;
    return made_up<HGDIOBJ>(stock_objects + static_cast<ULONG_PTR>(object));
}

HDC GetDC(HWND) {
    if (substitute::failing("GetDC", ERROR_INVALID_HANDLE))
        return nullptr;
    filled.clear();
    return made_up<HDC>(device_context);
}
int ReleaseDC(HWND, HDC context) {
    return !substitute::failing("ReleaseDC", ERROR_INVALID_HANDLE) && context == made_up<HDC>(device_context)
               ? 1
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
    *metrics = selected == made_up<HGDIOBJ>(stock_objects + DEFAULT_GUI_FONT) ? gui_font : system_font;
    return TRUE;
}

int FillRect(HDC, const RECT* rectangle, HBRUSH brush) {
    if (substitute::failing("FillRect", ERROR_INVALID_HANDLE))
        return 0;
    substitute::note(filled, Filled{*rectangle, colour_of(brush)});
    return 1;
}

COLORREF GetPixel(HDC, int x, int y) {
    const auto found =
        std::find_if(filled.rbegin(), filled.rend(), [&](const Filled& each) { return each.covers(x, y); });
    return found == filled.rend() ? CLR_INVALID : found->colour;
}

/// An invented handle, a different one for each number.
DWORD GetSysColor(int colour) { return 0x010101U * static_cast<DWORD>(colour); }
