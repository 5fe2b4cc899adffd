#include "spec/boolean_entry.h"

#include "spec/value_text.h"

#include <utility>

namespace {
constexpr PageControl checkbox{.child = {.window_class = "Button",
                                         .text = "Enabled",
                                         .style = BS_AUTOCHECKBOX,
                                         .failure = "Unable to create checkbox control"},
                               .above_bottom = 25,
                               .height = 15,
                               .edited = BN_CLICKED};
}

BooleanEntry::BooleanEntry(CommonRegKey binding, std::string_view title, std::string_view help_text)
    : SingleControlEntry(title, help_text, checkbox), CommonRegKey(std::move(binding)) {}

void BooleanEntry::showValue() {
    SendMessageA(control(), BM_SETCHECK, means_checked(value()) ? BST_CHECKED : BST_UNCHECKED, 0);
}

void BooleanEntry::takeValue() {
    set_value(checked_text(SendMessageA(control(), BM_GETCHECK, 0, 0) == BST_CHECKED));
}
