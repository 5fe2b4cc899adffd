#pragma once
#include "platform/win32.h"

/// Creates the main window's tree and, once the tree is filled, its buttons. Throw the text that names the
/// control that could not be created.
HWND create_tree(HWND window);
void create_buttons(HWND window);

/// Brings OK and Close/Cancel in step with whether any configuration has unsaved changes.
void update_buttons(HWND window);
