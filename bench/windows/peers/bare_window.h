#pragma once
/// The least code that shows what the tool's main window shows: a window with a tree and three buttons.
#include "platform/win32.h"

/// The functions of a program; each may be null.
struct BareProgram {
    /// Fills the tree when the window is made.
    void (*fill)(HWND tree);
    /// The button OK; the window closes afterwards.
    void (*write)();
    /// The button Test Connection.
    void (*test)();
};

/// Shows the window and handles messages until it is closed. Returns the exit code.
int run_bare_window(HINSTANCE instance, int show_command, const BareProgram& program);
