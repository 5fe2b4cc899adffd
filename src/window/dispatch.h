#pragma once
#include "platform/win32.h"

/// Hands a retrieved message on as a dialog would: keyboard navigation of the window `navigated` first, then
/// to the window that the message is for.
inline void dispatch_message(HWND navigated, MSG& message) {
    if (IsDialogMessageA(navigated, &message))
        return;
    TranslateMessage(&message);
    DispatchMessageA(&message);
}
