#include "substitute/calls.h"
#include "substitute/windows/hooks.h"
#include "substitute/windows/window.h"
#include "substitute/windows/window_calls.h"

/// The keyboard navigation that IsDialogMessageA adds to any window: it is a "dialog" for this call only, and
/// moves nothing: the program moves the focus itself before it asks.
namespace substitute {
namespace {

LRESULT dialog_code(HWND control, const MSG* message) {
    const WPARAM key = message == nullptr ? 0 : message->wParam;
    return SendMessageA(control, WM_GETDLGCODE, key, reinterpret_cast<LPARAM>(message));
}

bool press_enter(HWND dialog) {
    const HWND focus = GetFocus();
    const bool is_default = focus != nullptr && (dialog_code(focus, nullptr) & DLGC_DEFPUSHBUTTON) != 0;
    const int id = is_default ? GetDlgCtrlID(focus) : IDOK;
    const HWND source = is_default ? focus : dialog_item(dialog, IDOK);
    SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(source));
    return true;
}

bool press_escape(HWND dialog) {
    const HWND source = dialog_item(dialog, IDCANCEL);
    SendMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(IDCANCEL), reinterpret_cast<LPARAM>(source));
    return true;
}

/// Whether the navigation takes the key. For the arrow keys it asks the dialog to move the focus, which only
/// a real dialog does; here they have no effect.
bool handle_key(HWND dialog, const MSG& message) {
    const LRESULT code = dialog_code(message.hwnd, &message);
    if ((code & DLGC_WANTMESSAGE) != 0)
        return false;
    switch (static_cast<int>(message.wParam)) {
    case VK_LEFT:
    case VK_UP:
    case VK_RIGHT:
    case VK_DOWN: return (code & DLGC_WANTARROWS) == 0;
    case VK_ESCAPE: return press_escape(dialog);
    case VK_RETURN: return press_enter(dialog);
    default: return false;
    }
}

} // namespace
} // namespace substitute

using namespace substitute;

BOOL IsDialogMessageA(HWND dialog, LPMSG message) {
    if (failing("IsDialogMessageA", ERROR_INVALID_WINDOW_HANDLE) || window_of(dialog) == nullptr)
        return FALSE;
    if (filter_takes(*message))
        return TRUE;
    if (message->hwnd != dialog && !IsChild(dialog, message->hwnd))
        return FALSE;
    if (message->message == WM_KEYDOWN && handle_key(dialog, *message))
        return TRUE;
    TranslateMessage(message);
    DispatchMessageA(message);
    return TRUE;
}
