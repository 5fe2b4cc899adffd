#pragma once
/// Message boxes.
#include "platform/win32.h"

#include <string>

struct BoxDescription {
    /// Null: the box stands on its own.
    HWND owner = nullptr;
    std::string text;
    std::string caption;
    /// MB_ constants: buttons and icon.
    UINT style;
};

/// Shows the box until the user answers and returns the button (IDOK, IDYES, ...). Throws what a window
/// procedure had to keep meanwhile.
int show_box(const BoxDescription& box);
