#include "spec/boolean_entry.h"

#include "error/text.h"

#include <utility>

namespace {
constexpr PageControl checkbox{
    {"Button", "Enabled", BS_AUTOCHECKBOX, 0, "Unable to create checkbox control"}, 25, 15, BN_CLICKED};
}

BooleanEntry::BooleanEntry(CommonRegKey binding, std::string_view title, std::string_view help_text)
    : SingleControlEntry(title, help_text, checkbox), CommonRegKey(std::move(binding)) {}

void BooleanEntry::showValue() {
    const bool on = to_lower(value()) == "true";
    SendMessageA(control(), BM_SETCHECK, on ? BST_CHECKED : BST_UNCHECKED, 0);
}

void BooleanEntry::takeValue() {
    const bool on = SendMessageA(control(), BM_GETCHECK, 0, 0) == BST_CHECKED;
    set_value(on ? "true" : "false");
}
