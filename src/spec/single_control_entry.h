#pragma once
/// The page of every kind of entry that has one control below the help text.
#include "spec/base_entry.h"
#include "window/controls.h"

#include <string>

/// For a control that has no value to edit.
inline constexpr WORD never_reported = 0xFFFF;

/// What tells one such kind from another.
struct PageControl {
    ControlDescription child;
    /// Distance of the control's upper edge from the page's lower edge, and the control's height, in pixels.
    int above_bottom;
    int height;
    /// The notification code by which the control reports that the user edited the value.
    WORD edited = never_reported;
};

class SingleControlEntry : public BaseEntry {
public:
    /// `kind` must outlive the entry.
    SingleControlEntry(std::string_view title, std::string_view help_text, const PageControl& kind);

    void createControls(HWND parent) override;
    void destroyControls(HWND parent) override;
    void layout(HWND parent) override;
    LRESULT handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) override;

protected:
    ~SingleControlEntry() = default;

    /// Null while the page is not shown.
    HWND control() const { return control_; }

private:
    const PageControl& kind_;
    HWND control_ = nullptr;
};
