#include "pages/kinds/value_entries.h"

#include "specfile/value_text.h"

#include <utility>

// A configuration may have a hundred thousand entries, so larger entries would cost memory and time.
static_assert(sizeof(StringEntry) <= 104);

namespace {

constexpr PageControl text_box{.child = {.window_class = "Edit",
                                         .style = ES_AUTOHSCROLL,
                                         .extended_style = WS_EX_CLIENTEDGE,
                                         .failure = "Unable to create text entry control"},
                               .above_bottom = 30,
                               .height = 20,
                               .edited = EN_CHANGE};

constexpr PageControl number_box{.child = {.window_class = "Edit",
                                           .style = ES_NUMBER | ES_AUTOHSCROLL,
                                           .extended_style = WS_EX_CLIENTEDGE,
                                           .failure = "Unable to create integer entry control"},
                                 .above_bottom = 30,
                                 .height = 20,
                                 .edited = EN_CHANGE};

constexpr PageControl checkbox{.child = {.window_class = "Button",
                                         .text = "Enabled",
                                         .style = BS_AUTOCHECKBOX,
                                         .failure = "Unable to create checkbox control"},
                               .above_bottom = 25,
                               .height = 15,
                               .edited = BN_CLICKED};

} // namespace

StringEntry::StringEntry(CommonRegKey binding, std::string_view subspec)
    : SingleControlEntry(subspec, text_box), CommonRegKey(std::move(binding)) {}

void StringEntry::showValue() { SetWindowTextA(control(), value().c_str()); }

void StringEntry::takeValue() { set_value(control_text(control())); }

IntegerEntry::IntegerEntry(CommonRegKey binding, std::string_view subspec)
    : SingleControlEntry(subspec, number_box), CommonRegKey(std::move(binding)) {}

void IntegerEntry::showValue() { SetWindowTextA(control(), integer_text(value()).c_str()); }

void IntegerEntry::takeValue() { set_value(integer_text(control_text(control()))); }

BooleanEntry::BooleanEntry(CommonRegKey binding, std::string_view subspec)
    : SingleControlEntry(subspec, checkbox), CommonRegKey(std::move(binding)) {}

void BooleanEntry::showValue() {
    SendMessageA(control(), BM_SETCHECK, means_checked(value()) ? BST_CHECKED : BST_UNCHECKED, 0);
}

void BooleanEntry::takeValue() {
    set_value(checked_text(SendMessageA(control(), BM_GETCHECK, 0, 0) == BST_CHECKED));
}
