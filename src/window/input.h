#pragma once
#include "platform/win32.h"

/// Drops what mouse and keyboard have left in the queue for `window` and its children, frame included, and
/// nothing else. Null: does nothing.
void drop_input(HWND window);
