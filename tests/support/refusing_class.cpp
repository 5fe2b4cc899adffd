#include "support/refusing_class.h"

#include <utility>

namespace {

int remaining = 0;

LRESULT CALLBACK refusing_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_NCCREATE && --remaining == 0)
        return FALSE;
    return DefWindowProcA(window, message, wparam, lparam);
}

} // namespace

RefusingClass::RefusingClass(std::string name, int nth) : name_(std::move(name)) {
    remaining = nth;
    WNDCLASSEXA description{};
    description.cbSize = sizeof description;
    description.lpfnWndProc = refusing_procedure;
    description.hInstance = GetModuleHandleA(nullptr);
    description.lpszClassName = name_.c_str();
    RegisterClassExA(&description);
}

RefusingClass::~RefusingClass() { UnregisterClassA(name_.c_str(), GetModuleHandleA(nullptr)); }
