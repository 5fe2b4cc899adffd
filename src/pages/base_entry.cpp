#include "pages/base_entry.h"

#include "window/guard.h"
#include "window/top_level.h"

#include <cstdio>
#include <string>

namespace {

LRESULT route(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    const auto found = entryByGroupBox.find(window);
    // It is deliberate that this is not the box's previous procedure: the page no longer exists, and neither
    // does that procedure.
    return found == entryByGroupBox.end() ? DefWindowProcA(window, message, wparam, lparam)
                                          : found->second->handleMessage(window, message, wparam, lparam);
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
    group_box_ = create_control(parent, {.window_class = "Button",
                                         .text = std::string(title_).c_str(),
                                         .style = BS_GROUPBOX,
                                         .placement = {},
                                         .has_stock_font = false,
                                         .failure = "Unable to create group box"});
    previous_procedure_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrA(group_box_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&guarded_procedure<route>)));
    entryByGroupBox.insert_or_assign(group_box_, this);
}

void BaseEntry::createControls(HWND parent) {
    create_group_box(parent);
    help_static_ = create_control(group_box_, {.window_class = "Static",
                                               .text = std::string(help_text_).c_str(),
                                               .failure = "Unable to create help text static"});
}

void BaseEntry::destroyControls(HWND) {
    destroy_control(help_static_);
    DestroyWindow(group_box_);
    entryByGroupBox.erase(group_box_);
    group_box_ = nullptr;
}

void BaseEntry::layout(HWND parent) {
    const RECT window = client_rectangle(parent);
    const int half = window.right / 2;
    place(group_box_, {.x = half + 10, .y = 10, .width = half - 20, .height = window.bottom - 50});
    const RECT page = client_rectangle(group_box_);
    place(help_static_, {.x = 10, .y = 20, .width = page.right - 20, .height = page.bottom - 60});
}

LRESULT BaseEntry::handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    // The parent of a themed control draws its background. A group box draws only its frame, so the corners
    // of the controls would be black.
    if (message == WM_ERASEBKGND || message == WM_PRINTCLIENT)
        fill_ground(window, reinterpret_cast<HDC>(wparam));
    return CallWindowProcA(previous_procedure_, window, message, wparam, lparam);
}

SingleControlEntry::SingleControlEntry(std::string_view title, std::string_view help_text,
                                       const PageControl& kind)
    : BaseEntry(title, help_text), kind_(kind) {}

void SingleControlEntry::createControls(HWND parent) {
    BaseEntry::createControls(parent);
    control_ = create_control(group_box(), kind_.child);
}

void SingleControlEntry::destroyControls(HWND parent) {
    destroy_control(control_);
    BaseEntry::destroyControls(parent);
}

void SingleControlEntry::layout(HWND parent) {
    BaseEntry::layout(parent);
    const RECT page = client_rectangle(group_box());
    place(control_,
          {.x = 10, .y = page.bottom - kind_.above_bottom, .width = page.right - 20, .height = kind_.height});
}

LRESULT SingleControlEntry::handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (reports(message, wparam, lparam, control_, kind_.edited))
        post_page_changed();
    return BaseEntry::handleMessage(window, message, wparam, lparam);
}
