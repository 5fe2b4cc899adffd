#pragma once
/// Free text.
#include "spec/single_control_entry.h"
#include "store/common_reg_key.h"

#include <string>

class StringEntry final : public SingleControlEntry, public CommonRegKey {
public:
    StringEntry(CommonRegKey binding, std::string_view title, std::string_view help_text);

    void showValue() override;
    void takeValue() override;
};
