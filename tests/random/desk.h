#pragma once
/// The screen, keyboard and mouse of a simulated user. The program has handled an action before the user
/// looks again.
#include "platform/win32.h"

#include <optional>
#include <string>

namespace random_user {

class Desk {
public:
    virtual ~Desk() = default;

    /// The main window; null if it no longer exists.
    virtual HWND window() = 0;
    virtual HWND focus() = 0;
    virtual std::string text_of(HWND control) = 0;
    virtual std::string text_of(HTREEITEM item) = 0;
    /// Where the item's text lies in the tree. False for an item inside a closed one.
    virtual bool find(HTREEITEM item, RECT& text_place) = 0;

    /// Whether a scan ends at once; where it takes seconds, the user does not scan.
    virtual bool scans_at_once() = 0;

    virtual void click(HWND control, POINT where) = 0;
    virtual void press(int key, bool with_shift) = 0;
    virtual void type(const std::string& text) = 0;
    virtual void leave_and_return() = 0;
    virtual void minimise_and_restore() = 0;
    virtual void resize(int width, int height) = 0;
    virtual void shut() = 0;
    /// Minimises the window by its frame and restores it after a window of another program came and went.
    virtual void minimise_beside_another_window() = 0;

    // What other processes and the system do.
    virtual void select(HTREEITEM item) = 0;
    virtual void order_to_close() = 0;
    virtual bool may_session_end() = 0;
    /// The number of message boxes so far; empty if boxes can appear between two looks.
    virtual std::optional<std::size_t> boxes_shown() = 0;
    /// Whether the open dialog is one of the system's and not a message box.
    virtual bool shows_system_dialog() = 0;
};

} // namespace random_user
