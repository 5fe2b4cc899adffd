#pragma once
/// A whole number, always stored in plain decimal form; a text that holds no number is stored as the empty
/// text.
#include "spec/single_control_entry.h"
#include "store/common_reg_key.h"

#include <string>

class IntegerEntry final : public SingleControlEntry, public CommonRegKey {
public:
    IntegerEntry(CommonRegKey binding, std::string_view title, std::string_view help_text);

    void showValue() override;
    void takeValue() override;
};
