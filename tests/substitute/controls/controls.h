#pragma once
/// The window procedures of the system's own classes. Internal to the substitute.
#include "substitute/windows/user.h"

namespace substitute {

LRESULT button_procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT static_procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT edit_procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT combo_box_procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam);
/// Closes the open list of a combo box when the user clicks elsewhere. False when `handle` has none.
bool leave_open_list(HWND handle);
LRESULT tree_view_procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam);

LRESULT folder_browser_procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam);

/// On Windows both classes have the name of the dialog class; here each has its own procedure.
inline constexpr LPCSTR dialog_class = "#32770";
inline constexpr LPCSTR folder_browser_class = "#32770 folder browser";

} // namespace substitute
