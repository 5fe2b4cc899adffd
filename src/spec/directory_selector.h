#pragma once
/// A folder, typed or picked with the shell's folder browser.
#include "spec/text_and_button_entry.h"

#include <string>

class DirectorySelector final : public TextAndButtonEntry {
public:
    DirectorySelector(CommonRegKey binding, std::string_view title, std::string_view help_text);

private:
    void button_pressed() override;
};
