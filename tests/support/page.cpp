#include "support/page.h"

#include "pages/base_entry.h"
#include "support/user.h"
#include "window/guard.h"
#include "window/top_level.h"

#include <map>
#include <utility>

namespace {

constexpr UINT page_changed = 0x8001;
constexpr const char* class_name = "stand_in_main_window";
int changes_seen = 0;
std::vector<HWND> destroyed_controls;
std::function<void(HWND)> creation_step;

std::map<HWND, WNDPROC> frame_procedures;

LRESULT CALLBACK frame_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

/// Not every system notifies the main window of events in a frame, so the frames are watched, too.
void watch_frame(HWND frame) {
    frame_procedures[frame] = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrA(frame, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&frame_procedure)));
}

void note_control(HWND parent, UINT event, HWND control) {
    if (GetParent(control) != parent)
        return;
    if (event == WM_DESTROY)
        destroyed_controls.push_back(control);
    if (event == WM_CREATE && parent == main_window)
        watch_frame(control);
    if (event == WM_CREATE && creation_step)
        creation_step(control);
}

void note(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == page_changed && wparam == 0 && lparam == 0)
        ++changes_seen;
    if (message == WM_PARENTNOTIFY)
        note_control(window, LOWORD(wparam), reinterpret_cast<HWND>(lparam));
}

LRESULT noted(WNDPROC own, HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    const auto go_on = [&] { return CallWindowProcA(own, window, message, wparam, lparam); };
    return guarded(
        0,
        [&] {
            note(window, message, wparam, lparam);
            return go_on();
        },
        go_on);
}

LRESULT CALLBACK frame_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    return noted(frame_procedures[window], window, message, wparam, lparam);
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    return noted(&DefWindowProcA, window, message, wparam, lparam);
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
    destroyed_controls.clear();
    creation_step = nullptr;
}

StandInMainWindow::~StandInMainWindow() {
    // The entries of the shown pages may already be destroyed.
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

const std::vector<HWND>& StandInMainWindow::destroyed() { return destroyed_controls; }

void StandInMainWindow::when_created(std::function<void(HWND)> step) { creation_step = std::move(step); }

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
