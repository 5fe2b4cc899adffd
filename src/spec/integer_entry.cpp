#include "spec/integer_entry.h"

#include "spec/value_text.h"

#include <utility>

namespace {

constexpr PageControl number_box{.child = {.window_class = "Edit",
                                           .style = ES_NUMBER | ES_AUTOHSCROLL,
                                           .extended_style = WS_EX_CLIENTEDGE,
                                           .failure = "Unable to create integer entry control"},
                                 .above_bottom = 30,
                                 .height = 20,
                                 .edited = EN_CHANGE};

} // namespace

IntegerEntry::IntegerEntry(CommonRegKey binding, std::string_view title, std::string_view help_text)
    : SingleControlEntry(title, help_text, number_box), CommonRegKey(std::move(binding)) {}

void IntegerEntry::showValue() { SetWindowTextA(control(), integer_text(value()).c_str()); }

void IntegerEntry::takeValue() { set_value(integer_text(control_text(control()))); }
