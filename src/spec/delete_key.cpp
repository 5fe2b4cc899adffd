#include "spec/delete_key.h"

#include <utility>

namespace {
constexpr PageControl checkbox{.child = {.window_class = "Button",
                                         .text = "Delete",
                                         .style = BS_AUTOCHECKBOX,
                                         .failure = "Unable to create checkbox delete control"},
                               .above_bottom = 25,
                               .height = 15,
                               .edited = BN_CLICKED};
}

DeleteKey::DeleteKey(DeleteRegKey binding, std::string_view title, std::string_view help_text)
    : SingleControlEntry(title, help_text, checkbox), DeleteRegKey(std::move(binding)) {}

void DeleteKey::showValue() {
    EnableWindow(control(), exists() ? TRUE : FALSE);
    if (exists())
        SendMessageA(control(), BM_SETCHECK, delete_requested() ? BST_CHECKED : BST_UNCHECKED, 0);
}

void DeleteKey::takeValue() {
    if (exists())
        request_delete(SendMessageA(control(), BM_GETCHECK, 0, 0) == BST_CHECKED);
}
