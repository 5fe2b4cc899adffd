#pragma once
/// The main window's own controls, the tree and the buttons: their creation and placement.
#include "window/controls.h"

/// Assistive and test programs use these identifiers to find the controls.
inline constexpr int tree_id = 101;
inline constexpr int close_id = 103;
inline constexpr int ok_id = 104;
inline constexpr int test_connection_id = 105;

/// Create the tree and, once it is filled, the buttons. Throw a text that names the control that could not be
/// created.
HWND create_tree(HWND window);
void create_buttons(HWND window);

/// Places in a main window whose client rectangle is `client`.
Placement tree_placement(const RECT& client);
Placement ok_placement(const RECT& client);
Placement close_placement(const RECT& client);
Placement test_connection_placement(const RECT& client);

/// The smallest main window, frame included, in pixels; also its first size.
inline constexpr int minimum_width = 436;
inline constexpr int minimum_height = 229;

/// Makes the rectangle that the user is dragging by `edge` (WMSZ_LEFT and its siblings) at least as large as
/// the minimum, by moving the dragged edge back.
void keep_minimum_size(WPARAM edge, RECT& proposed);

/// Places the tree, the shown pages and the buttons for the window's present size.
void lay_out(HWND window);
