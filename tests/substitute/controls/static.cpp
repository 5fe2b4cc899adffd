#include "substitute/controls/controls.h"
#include "substitute/windows/window.h"

namespace substitute {

LRESULT static_procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    Window* window = window_of(handle);
    if (window == nullptr)
        return 0;
    switch (message) {
    case WM_GETDLGCODE: return DLGC_STATIC;
    case WM_SETFONT: window->font = reinterpret_cast<HFONT>(wparam); return 0;
    case WM_GETFONT: return reinterpret_cast<LRESULT>(window->font);
    default: return DefWindowProcA(handle, message, wparam, lparam);
    }
}

} // namespace substitute
