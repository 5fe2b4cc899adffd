#include "spec/string_entry.h"

#include <utility>

namespace {
constexpr PageControl text_box{.child = {.window_class = "Edit",
                                         .style = ES_AUTOHSCROLL,
                                         .extended_style = WS_EX_CLIENTEDGE,
                                         .failure = "Unable to create text entry control"},
                               .above_bottom = 30,
                               .height = 20,
                               .edited = EN_CHANGE};
}

StringEntry::StringEntry(CommonRegKey binding, std::string_view title, std::string_view help_text)
    : SingleControlEntry(title, help_text, text_box), CommonRegKey(std::move(binding)) {}

void StringEntry::showValue() { SetWindowTextA(control(), value().c_str()); }

void StringEntry::takeValue() { set_value(control_text(control())); }
