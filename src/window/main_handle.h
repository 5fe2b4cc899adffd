#pragma once
/// The main window, as far as the rooms below app/ need it.
#include "platform/win32.h"

/// Owner of message boxes and of the wait window, receiver of the page-changed message, window of the
/// keyboard navigation. Null before it is created, after it is destroyed and after start-up failed.
inline HWND main_window = nullptr;

/// Posted to the main window, without parameters, after the user edited the value of the page shown.
inline constexpr UINT page_changed_message = WM_APP + 1;
void post_page_changed();

/// Hands a retrieved message on as a dialog would: keyboard navigation of the window `navigated` first, then
/// to the window that the message is for.
void dispatch_message(HWND navigated, MSG& message);

/// Handles one message, if one is waiting: between the steps of a long wait, it keeps the windows painted. A
/// quit message stays for the program's own loop, and keeps no other message waiting. Throws what a procedure
/// had to keep.
void pump_one_message();
