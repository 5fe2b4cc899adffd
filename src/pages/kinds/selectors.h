#pragma once
/// The entries whose value is typed or found: a text box and a button beside it.
#include "pages/base_entry.h"
#include "store/common_reg_key.h"

#include <string>
#include <string_view>

/// The differences between kinds of such entries; distances and sizes in pixels.
struct TextAndButton {
    const char* text_box_failure;
    const char* button_text;
    const char* button_failure;
    /// The difference between the widths of the page and of the text box.
    int text_box_narrower;
    /// The distance of the button's upper left corner from the page's lower right corner.
    int button_from_right;
    int button_above_bottom;
    int button_width;
    int button_height;
};

/// The page of every kind of entry that has a text box, which holds the value, and a button beside it, which
/// finds one.
class TextAndButtonEntry : public BaseEntry, public CommonRegKey {
public:
    /// `kind` must outlive the entry.
    TextAndButtonEntry(CommonRegKey binding, std::string_view subspec, const TextAndButton& kind);

    void createControls(HWND parent) override;
    void destroyControls(HWND parent) override;
    void layout(HWND parent) override;
    void showValue() override;
    void takeValue() override;
    LRESULT handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) override;

protected:
    ~TextAndButtonEntry() = default;

    virtual void button_pressed() = 0;

    /// Null while the page is not shown.
    HWND text_box() const { return page().control; }
    /// Makes `found` the value and shows it; drops it when the page is no longer shown.
    void replace_value(std::string found);

private:
    const TextAndButton& kind_;
};

/// A folder, typed or picked with the shell's folder browser.
class DirectorySelector final : public TextAndButtonEntry {
public:
    DirectorySelector(CommonRegKey binding, std::string_view subspec);

private:
    void button_pressed() override;
};

/// A file, typed or picked with the open-file dialog, which offers the files of one extension.
class FileSelector final : public TextAndButtonEntry {
public:
    /// `extension` has no dot; empty for files of every name.
    FileSelector(CommonRegKey binding, std::string_view subspec, std::string extension);

private:
    void button_pressed() override;

    std::string extension_;
};
