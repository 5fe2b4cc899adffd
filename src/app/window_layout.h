#pragma once
#include "window/controls.h"

/// Places in a main window whose client rectangle is `client`.
Placement tree_placement(const RECT& client);
Placement ok_placement(const RECT& client);
Placement close_placement(const RECT& client);
Placement test_connection_placement(const RECT& client);

/// The smallest main window, frame included, in pixels; also its first size.
inline constexpr int kMinimumWidth = 436;
inline constexpr int kMinimumHeight = 229;

/// Makes the rectangle that the user is dragging by `edge` (WMSZ_LEFT and its siblings) at least as large as
/// the minimum, by moving the dragged edge back.
void keep_minimum_size(WPARAM edge, RECT& proposed);

/// Places the tree, the shown pages and the buttons for the window's present size.
void lay_out(HWND window);
