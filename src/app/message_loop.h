#pragma once
#include "platform/win32.h"

/// Handles messages until the quit message and returns its value; 0 when no message can be retrieved. Throws
/// what a window procedure had to keep.
int run_message_loop(HWND main);
