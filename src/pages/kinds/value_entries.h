#pragma once
/// The entries whose value is typed or ticked: a text, a number, a yes or no.
#include "pages/base_entry.h"
#include "store/common_reg_key.h"

#include <string_view>

/// Free text.
class StringEntry final : public SingleControlEntry, public CommonRegKey {
public:
    StringEntry(CommonRegKey binding, std::string_view subspec);

    void showValue() override;
    void takeValue() override;
};

/// A whole number, always stored in plain decimal form; a text that holds no number is stored as the empty
/// text.
class IntegerEntry final : public SingleControlEntry, public CommonRegKey {
public:
    IntegerEntry(CommonRegKey binding, std::string_view subspec);

    void showValue() override;
    void takeValue() override;
};

/// A checkbox, stored as "true" or "false".
class BooleanEntry final : public SingleControlEntry, public CommonRegKey {
public:
    BooleanEntry(CommonRegKey binding, std::string_view subspec);

    /// Checks the box exactly when the value is "true" in any letter case.
    void showValue() override;
    void takeValue() override;
};
