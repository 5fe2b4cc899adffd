#include "support/page.h"

#include "platform/main_window.h"
#include "spec/base_entry.h"
#include "support/user.h"

#include <utility>

namespace {

constexpr UINT page_changed = 0x8001;
constexpr const char* class_name = "stand_in_main_window";
int changes_seen = 0;

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == page_changed && wparam == 0 && lparam == 0)
        ++changes_seen;
    return DefWindowProcA(window, message, wparam, lparam);
}

HWND create(int width, int height) {
    WNDCLASSEXA details{};
    details.cbSize = sizeof details;
    details.lpfnWndProc = &procedure;
    details.hInstance = GetModuleHandleA(nullptr);
    details.lpszClassName = class_name;
    RegisterClassExA(&details);
    // A pop-up without frame: its size is that of its client area, however small.
    return CreateWindowExA(0, class_name, "", WS_POPUP, 0, 0, width, height, nullptr, nullptr,
                           GetModuleHandleA(nullptr), nullptr);
}

} // namespace

StandInMainWindow::StandInMainWindow(int client_width, int client_height)
    : window_(create(client_width, client_height)) {
    main_window = window_;
    changes_seen = 0;
}

StandInMainWindow::~StandInMainWindow() {
    // The entries of the pages still shown may be gone already.
    entryByGroupBox.clear();
    DestroyWindow(window_);
    main_window = nullptr;
    UnregisterClassA(class_name, GetModuleHandleA(nullptr));
}

void StandInMainWindow::resize(int client_width, int client_height) {
    SetWindowPos(window_, nullptr, 0, 0, client_width, client_height, SWP_NOZORDER | SWP_NOMOVE);
}

int StandInMainWindow::page_changes() {
    pump_messages();
    return std::exchange(changes_seen, 0);
}

HWND StandInMainWindow::group_box() const { return GetWindow(window_, GW_CHILD); }

std::vector<HWND> StandInMainWindow::controls() const { return children_of(group_box()); }

std::ostream& operator<<(std::ostream& stream, const Placement& placement) {
    return stream << placement.width << "x" << placement.height << " at " << placement.x << ", "
                  << placement.y;
}

Placement placement_of(HWND control) {
    RECT rectangle{};
    GetWindowRect(control, &rectangle);
    POINT corner{rectangle.left, rectangle.top};
    MapWindowPoints(nullptr, GetParent(control), &corner, 1);
    return {corner.x, corner.y, rectangle.right - rectangle.left, rectangle.bottom - rectangle.top};
}

std::vector<HWND> children_of(HWND parent) {
    std::vector<HWND> children;
    if (parent == nullptr)
        return children;
    for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        children.push_back(child);
    return children;
}

std::string class_of(HWND window) {
    char buffer[64] = "";
    GetClassNameA(window, buffer, sizeof buffer);
    return buffer;
}

LONG_PTR style_of(HWND window) { return GetWindowLongPtrA(window, GWL_STYLE); }
LONG_PTR extended_style_of(HWND window) { return GetWindowLongPtrA(window, GWL_EXSTYLE); }

HFONT font_of(HWND window) { return reinterpret_cast<HFONT>(SendMessageA(window, WM_GETFONT, 0, 0)); }

bool is_checked(HWND checkbox) { return SendMessageA(checkbox, BM_GETCHECK, 0, 0) == BST_CHECKED; }

void click(HWND button) { SendMessageA(button, BM_CLICK, 0, 0); }

void type(HWND edit_control, const std::string& text) { SetWindowTextA(edit_control, text.c_str()); }
