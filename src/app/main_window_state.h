#pragma once
#include "spec/configuration.h"

/// What the main window remembers between messages; begins anew with each main window.
struct MainWindowState {
    /// The configuration whose node is selected, if it offers a connection test.
    Configuration* tested = nullptr;
    /// What the buttons show. True at first, so that the first update without changes writes "Close".
    bool changed = true;
    /// The control that had the keyboard focus when the window was last left.
    HWND left_focus = nullptr;
};

inline MainWindowState main_window_state;
