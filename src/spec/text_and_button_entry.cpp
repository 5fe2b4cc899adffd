#include "spec/text_and_button_entry.h"

#include "window/controls.h"

#include <utility>

TextAndButtonEntry::TextAndButtonEntry(CommonRegKey binding, std::string_view title,
                                       std::string_view help_text, const TextAndButton& kind)
    : BaseEntry(title, help_text), CommonRegKey(std::move(binding)), kind_(kind) {}

void TextAndButtonEntry::createControls(HWND parent) {
    BaseEntry::createControls(parent);
    text_box_ =
        create_child(group_box(), {"Edit", "", ES_AUTOHSCROLL, WS_EX_CLIENTEDGE, kind_.text_box_failure});
    button_ = create_child(group_box(), {"Button", kind_.button_text, 0, 0, kind_.button_failure});
}

void TextAndButtonEntry::destroyControls(HWND parent) {
    destroy_child(button_);
    destroy_child(text_box_);
    BaseEntry::destroyControls(parent);
}

void TextAndButtonEntry::layout(HWND parent) {
    BaseEntry::layout(parent);
    const RECT page = client_rectangle(group_box());
    place(text_box_, 10, page.bottom - 30, page.right - kind_.text_box_narrower, 20);
    place(button_, page.right - kind_.button_from_right, page.bottom - kind_.button_above_bottom,
          kind_.button_width, kind_.button_height);
}

void TextAndButtonEntry::showValue() { SetWindowTextA(text_box_, value().c_str()); }

void TextAndButtonEntry::takeValue() { set_value(control_text(text_box_)); }

LRESULT TextAndButtonEntry::handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (reports_press(message, wparam))
        button_pressed();
    if (reports(message, wparam, lparam, text_box_, EN_CHANGE))
        post_page_changed();
    return BaseEntry::handleMessage(window, message, wparam, lparam);
}

void TextAndButtonEntry::replace_value(std::string found) {
    set_value(std::move(found));
    showValue();
}
