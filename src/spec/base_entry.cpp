#include "spec/base_entry.h"

#include "window/controls.h"
#include "window/guard.h"

#include <cstdio>
#include <string>

namespace {

LRESULT route(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    const auto found = entryByGroupBox.find(window);
    // Deliberately not the procedure that the box had before: whose page is gone, is no longer known.
    return found == entryByGroupBox.end() ? DefWindowProcA(window, message, wparam, lparam)
                                          : found->second->handleMessage(window, message, wparam, lparam);
}

LRESULT CALLBACK group_box_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    return guarded(
        0, [&] { return route(window, message, wparam, lparam); },
        [&] { return DefWindowProcA(window, message, wparam, lparam); });
}

} // namespace

void BaseEntry::select(HWND parent) {
    if (selected_) {
        std::fputs("Double selection!\n", stderr);
        return;
    }
    createControls(parent);
    layout(parent);
    showValue();
    selected_ = true;
}

void BaseEntry::deselect(HWND parent) {
    if (!selected_) {
        std::fputs("Double deselection!\n", stderr);
        return;
    }
    takeValue();
    destroyControls(parent);
    selected_ = false;
}

void BaseEntry::create_group_box(HWND parent) {
    group_box_ =
        CreateWindowExA(0, "Button", std::string(title_).c_str(), WS_CHILD | WS_VISIBLE | BS_GROUPBOX, 0, 0,
                        0, 0, parent, no_identifier(), GetModuleHandleA(nullptr), nullptr);
    rethrow_kept();
    if (group_box_ == nullptr)
        throw std::string("Unable to create group box");
    previous_procedure_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrA(group_box_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&group_box_procedure)));
    entryByGroupBox.insert_or_assign(group_box_, this);
}

void BaseEntry::createControls(HWND parent) {
    create_group_box(parent);
    const std::string help_text(help_text_);
    help_static_ =
        create_child(group_box_, {"Static", help_text.c_str(), 0, 0, "Unable to create help text static"});
}

void BaseEntry::destroyControls(HWND) {
    destroy_child(help_static_);
    DestroyWindow(group_box_);
    entryByGroupBox.erase(group_box_);
    group_box_ = nullptr;
}

void BaseEntry::layout(HWND parent) {
    const RECT window = client_rectangle(parent);
    const int half = window.right / 2;
    place(group_box_, half + 10, 10, half - 20, window.bottom - 50);
    const RECT page = client_rectangle(group_box_);
    place(help_static_, 10, 20, page.right - 20, page.bottom - 60);
}

LRESULT BaseEntry::handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    // Themed controls have what lies behind them drawn by their parent. A group box draws its frame alone,
    // and their corners would be black.
    if (message == WM_ERASEBKGND || message == WM_PRINTCLIENT)
        fill_ground(window, reinterpret_cast<HDC>(wparam));
    return CallWindowProcA(previous_procedure_, window, message, wparam, lparam);
}
