#include "pages/kinds/option_entry.h"

#include "base/text.h"
#include "window/top_level.h"

#include <utility>

namespace {

constexpr int opened_height = 140;
constexpr int list_frame = 2;

constexpr PageControl combo_box{.child = {.window_class = "ComboBox",
                                          .style = CBS_DROPDOWNLIST,
                                          .failure = "Unable to create combobox control"},
                                .above_bottom = 30,
                                .height = opened_height,
                                .edited = CBN_SELCHANGE};

} // namespace

OptionEntry::OptionEntry(CommonRegKey binding, std::string_view subspec, std::vector<std::string> options)
    : SingleControlEntry(subspec, combo_box), CommonRegKey(std::move(binding)), options_(std::move(options)) {
}

void OptionEntry::createControls(HWND parent) {
    SingleControlEntry::createControls(parent);
    text_by_index_.clear();
    index_by_text_.clear();
    for (const std::string& option : options_)
        add_option(option);
}

void OptionEntry::add_option(const std::string& option) {
    const std::string shown = option.substr(0, longest_value);
    const LRESULT result = SendMessageA(control(), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(shown.c_str()));
    // CB_ERR; no other negative result is an index either.
    if (result < 0)
        throw std::string("Unable to add string to combobox");
    const auto index = static_cast<std::uint32_t>(result);
    text_by_index_[index] = option;
    index_by_text_[option] = index;
}

void OptionEntry::layout(HWND parent) {
    SingleControlEntry::layout(parent);
    limit_opened_list();
}

/// Version 6 of the controls ignores a box's height and opens 30 rows, unless a number is set.
void OptionEntry::limit_opened_list() {
    RECT closed{};
    GetWindowRect(control(), &closed);
    const int room = opened_height - (closed.bottom - closed.top) - list_frame;
    const auto row = static_cast<int>(SendMessageA(control(), CB_GETITEMHEIGHT, 0, 0));
    if (row > 0)
        SendMessageA(control(), CB_SETMINVISIBLE, static_cast<WPARAM>(room / row), 0);
}

void OptionEntry::showValue() {
    shown_as_none_.reset();
    const auto found = index_by_text_.find(value());
    if (found != index_by_text_.end()) {
        SendMessageA(control(), CB_SETCURSEL, found->second, 0);
    } else {
        shown_as_none_ = value();
    }
}

void OptionEntry::takeValue() {
    const LRESULT selected = SendMessageA(control(), CB_GETCURSEL, 0, 0);
    if (selected == CB_ERR) {
        set_value(shown_as_none_.value_or(value()));
        return;
    }
    const auto found = text_by_index_.find(static_cast<std::uint32_t>(selected));
    if (found == text_by_index_.end())
        throw std::string("Lookup of selval failed");
    set_value(found->second);
}

/// A list that closes without a choice may put back the selection that it opened with, and reports no change.
LRESULT OptionEntry::handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (reports(message, wparam, lparam, control(), CBN_CLOSEUP))
        post_page_changed();
    return SingleControlEntry::handleMessage(window, message, wparam, lparam);
}
