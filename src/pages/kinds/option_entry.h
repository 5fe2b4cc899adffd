#pragma once
/// A choice from a fixed list of texts, which are both shown and stored.
#include "pages/base_entry.h"
#include "store/common_reg_key.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

class OptionEntry final : public SingleControlEntry, public CommonRegKey {
public:
    OptionEntry(CommonRegKey binding, std::string_view subspec, std::vector<std::string> options);

    void createControls(HWND parent) override;
    void layout(HWND parent) override;
    /// Shows a value that is not among the options as no selection.
    void showValue() override;
    /// Without a selection, keeps the value that was shown as no selection. Throws a text if the list
    /// contains an item that this entry did not add.
    void takeValue() override;
    LRESULT handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) override;

private:
    void add_option(const std::string& option);
    void limit_opened_list();

    std::vector<std::string> options_;
    /// The items with which the list box was filled. The value is taken from here and not from the box, so
    /// that it is exactly the option, even if the box changes its texts.
    std::map<std::uint32_t, std::string> text_by_index_;
    std::map<std::string, std::uint32_t> index_by_text_;
    /// The value that is shown as no selection, if there is one. A choice in an opened list becomes the
    /// value, and is undone if the list closes without it.
    std::optional<std::string> shown_as_none_;
};
