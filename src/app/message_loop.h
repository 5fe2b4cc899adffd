#pragma once
#include "platform/win32.h"

/// Handles messages until the quit message; returns its value. Throws what a window procedure had to keep.
int run_message_loop(HWND main);
