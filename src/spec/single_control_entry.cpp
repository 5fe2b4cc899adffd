#include "spec/single_control_entry.h"

#include "window/main_handle.h"

#include <utility>

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
