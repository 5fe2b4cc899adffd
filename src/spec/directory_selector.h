#pragma once
/// A folder, typed or picked with the shell's folder browser.
#include "spec/text_and_button_entry.h"

#include <string>

class DirectorySelector final : public TextAndButtonEntry {
public:
    DirectorySelector(CommonRegKey binding, std::string title, std::string help_text);

private:
    void button_pressed() override;
};
