#pragma once
/// A checkbox that asks for a whole registry key to be deleted.
#include "spec/single_control_entry.h"
#include "store/delete_reg_key.h"

#include <string>

class DeleteKey final : public SingleControlEntry, public DeleteRegKey {
public:
    DeleteKey(DeleteRegKey binding, std::string_view title, std::string_view help_text);

    /// Without the key there is nothing to ask for: the box is disabled and never asked.
    void showValue() override;
    void takeValue() override;
};
