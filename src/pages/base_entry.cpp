#include "pages/base_entry.h"

#include "specfile/spec_text.h"
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

std::string_view BaseEntry::title() const { return LineReader(subspec_).read(); }

std::string_view BaseEntry::help_text() const {
    LineReader lines(subspec_);
    lines.read();
    lines.read();
    return lines.read();
}

void BaseEntry::select(HWND parent) {
    if (page().is_selected) {
        std::fputs("Double selection!\n", stderr);
        return;
    }
    createControls(parent);
    layout(parent);
    showValue();
    page().is_selected = true;
}

void BaseEntry::deselect(HWND parent) {
    if (!page().is_selected) {
        std::fputs("Double deselection!\n", stderr);
        return;
    }
    takeValue();
    destroyControls(parent);
    pages.erase(this);
}

void BaseEntry::create_group_box(HWND parent) {
    const HWND box = create_control(parent, {.window_class = "Button",
                                             .text = std::string(title()).c_str(),
                                             .style = BS_GROUPBOX,
                                             .placement = {},
                                             .has_stock_font = false,
                                             .failure = "Unable to create group box"});
    page().group_box = box;
    page().previous_procedure = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrA(box, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&guarded_procedure<route>)));
    entryByGroupBox.insert_or_assign(box, this);
}

void BaseEntry::createControls(HWND parent) {
    create_group_box(parent);
    page().help_static = create_control(page().group_box, {.window_class = "Static",
                                                           .text = std::string(help_text()).c_str(),
                                                           .failure = "Unable to create help text static"});
}

void BaseEntry::destroyControls(HWND) {
    destroy_control(page().help_static);
    const HWND box = page().group_box;
    DestroyWindow(box);
    entryByGroupBox.erase(box);
    page().group_box = nullptr;
}

void BaseEntry::layout(HWND parent) {
    const RECT window = client_rectangle(parent);
    const int half = window.right / 2;
    place(page().group_box, {.x = half + 10, .y = 10, .width = half - 20, .height = window.bottom - 50});
    const RECT frame = client_rectangle(page().group_box);
    place(page().help_static, {.x = 10, .y = 20, .width = frame.right - 20, .height = frame.bottom - 60});
}

LRESULT BaseEntry::handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    // The parent of a themed control draws its background. A group box draws only its frame, so the corners
    // of the controls would be black.
    if (message == WM_ERASEBKGND || message == WM_PRINTCLIENT)
        fill_ground(window, reinterpret_cast<HDC>(wparam));
    return CallWindowProcA(page().previous_procedure, window, message, wparam, lparam);
}

SingleControlEntry::SingleControlEntry(std::string_view subspec, const PageControl& kind)
    : BaseEntry(subspec), kind_(kind) {}

void SingleControlEntry::createControls(HWND parent) {
    BaseEntry::createControls(parent);
    page().control = create_control(page().group_box, kind_.child);
}

void SingleControlEntry::destroyControls(HWND parent) {
    destroy_control(page().control);
    BaseEntry::destroyControls(parent);
}

void SingleControlEntry::layout(HWND parent) {
    BaseEntry::layout(parent);
    const RECT frame = client_rectangle(page().group_box);
    place(
        control(),
        {.x = 10, .y = frame.bottom - kind_.above_bottom, .width = frame.right - 20, .height = kind_.height});
}

LRESULT SingleControlEntry::handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (reports(message, wparam, lparam, control(), kind_.edited))
        post_page_changed();
    return BaseEntry::handleMessage(window, message, wparam, lparam);
}
