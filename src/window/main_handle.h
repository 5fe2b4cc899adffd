#pragma once
#include "platform/win32.h"

/// The main window: owner of message boxes, receiver of the page-changed message, window of the keyboard
/// navigation. Null before it is created and after start-up failed.
inline HWND main_window = nullptr;
