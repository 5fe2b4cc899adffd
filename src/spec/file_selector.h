#pragma once
/// A file, typed or picked with the open-file dialog, which offers the files of one extension.
#include "spec/text_and_button_entry.h"

#include <string>

class FileSelector final : public TextAndButtonEntry {
public:
    /// `extension` has no dot; empty for files of every name.
    FileSelector(CommonRegKey binding, std::string_view title, std::string_view help_text,
                 std::string extension);

private:
    void button_pressed() override;

    std::string extension_;
};
