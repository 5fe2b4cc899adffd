#include "spec/text_and_button_entry.h"

#include "window/controls.h"
#include "window/main_handle.h"

#include <utility>

TextAndButtonEntry::TextAndButtonEntry(CommonRegKey binding, std::string_view title,
                                       std::string_view help_text, const TextAndButton& kind)
    : BaseEntry(title, help_text), CommonRegKey(std::move(binding)), kind_(kind) {}

void TextAndButtonEntry::createControls(HWND parent) {
    BaseEntry::createControls(parent);
    text_box_ = create_control(group_box(), {.window_class = "Edit",
                                             .style = ES_AUTOHSCROLL,
                                             .extended_style = WS_EX_CLIENTEDGE,
                                             .failure = kind_.text_box_failure});
    button_ = create_control(
        group_box(), {.window_class = "Button", .text = kind_.button_text, .failure = kind_.button_failure});
}

void TextAndButtonEntry::destroyControls(HWND parent) {
    destroy_control(button_);
    destroy_control(text_box_);
    BaseEntry::destroyControls(parent);
}

void TextAndButtonEntry::layout(HWND parent) {
    BaseEntry::layout(parent);
    const RECT page = client_rectangle(group_box());
    place(text_box_,
          {.x = 10, .y = page.bottom - 30, .width = page.right - kind_.text_box_narrower, .height = 20});
    place(button_, {.x = page.right - kind_.button_from_right,
                    .y = page.bottom - kind_.button_above_bottom,
                    .width = kind_.button_width,
                    .height = kind_.button_height});
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
