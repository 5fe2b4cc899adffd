#include "spec/integer_entry.h"

#include "error/text.h"

#include <utility>

namespace {

constexpr PageControl number_box{.child = {.window_class = "Edit",
                                           .style = ES_NUMBER | ES_AUTOHSCROLL,
                                           .extended_style = WS_EX_CLIENTEDGE,
                                           .failure = "Unable to create integer entry control"},
                                 .above_bottom = 30,
                                 .height = 20,
                                 .edited = EN_CHANGE};

/// The decimal form of the number that `text` starts with, in C's notations; empty when there is none.
std::string plain_decimal(const std::string& text) {
    const auto number = scan_int(text);
    return number ? std::to_string(*number) : std::string();
}

} // namespace

IntegerEntry::IntegerEntry(CommonRegKey binding, std::string_view title, std::string_view help_text)
    : SingleControlEntry(title, help_text, number_box), CommonRegKey(std::move(binding)) {}

void IntegerEntry::showValue() { SetWindowTextA(control(), plain_decimal(value()).c_str()); }

void IntegerEntry::takeValue() { set_value(plain_decimal(control_text(control()))); }
