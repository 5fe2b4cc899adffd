#pragma once
#include "spec/configuration.h"

/// What the main window remembers between messages; begins anew with each main window.
struct MainWindowState {
    /// The configuration whose node is selected, if it offers a connection test.
    Configuration* tested = nullptr;
    /// What the buttons show. True at first, so that the first update without changes writes "Close".
    bool changed = true;
    /// The control that had the keyboard focus when the window itself or another one last got it.
    HWND left_focus = nullptr;
    /// Tree and buttons are all there. Before, there is nothing to bring in step with anything.
    bool complete = false;
};

inline MainWindowState main_window_state;
