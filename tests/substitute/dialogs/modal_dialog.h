#pragma once
/// A modal dialog of the system. Internal to the substitute.
#include "substitute/windows/user.h"

namespace substitute {

/// While it exists, a dialog window is active and its owner disabled. Posted messages are handled once it is
/// shown, as they do in the system's own modal loops.
class ModalDialog {
public:
    /// `class_name` is a class of the system's; null for a window that does nothing.
    ModalDialog(HWND owner, LPCSTR title, LPCSTR class_name = nullptr);
    ModalDialog(const ModalDialog&) = delete;
    ModalDialog& operator=(const ModalDialog&) = delete;
    /// Afterwards the focus is at the owner (or the window active then) itself, not at one of its controls.
    ~ModalDialog();

    HWND handle() const { return handle_; }

private:
    HWND owner_;
    bool owner_was_disabled_;
    HWND handle_;
};

} // namespace substitute
