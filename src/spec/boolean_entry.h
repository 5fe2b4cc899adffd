#pragma once
/// A checkbox, stored as "true" or "false".
#include "spec/single_control_entry.h"
#include "store/common_reg_key.h"

#include <string>

class BooleanEntry final : public SingleControlEntry, public CommonRegKey {
public:
    BooleanEntry(CommonRegKey binding, std::string_view title, std::string_view help_text);

    /// Checks the box exactly when the value is "true" in any letter case.
    void showValue() override;
    void takeValue() override;
};
