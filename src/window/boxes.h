#pragma once
/// Message boxes.
#include "platform/win32.h"

#include <string>

struct BoxDescription {
    /// Null for a box without an owner.
    HWND owner = nullptr;
    std::string text;
    std::string caption;
    /// MB_ constants: buttons and icon.
    UINT style;
};

/// Shows the box until the user answers and returns the button (IDOK, IDYES, ...). Throws what a window
/// procedure had to keep meanwhile. A quit message ends the box, unless a StandingBoxes exists.
int show_box(const BoxDescription& box);

/// While one exists, a box that anything but its buttons has closed is shown again, until the user answers
/// it.
class StandingBoxes {
public:
    StandingBoxes();
    StandingBoxes(const StandingBoxes&) = delete;
    StandingBoxes& operator=(const StandingBoxes&) = delete;
    ~StandingBoxes();
};
