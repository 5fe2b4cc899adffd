#pragma once
#include "pages/configuration.h"

/// Adds the configuration's nodes to the tree and records which entry each stands for. A configuration
/// without groups gets none; entries of a group without a name hang under the configuration's own node.
void fill_tree(Configuration& configuration, HWND tree);

/// Takes the values of the page that the configuration shows, if any, notes whether they differ from what is
/// stored, and takes the page down.
void leave_page(Configuration& configuration, HWND parent);

/// Leaves the page that the configuration shows, if any, and shows the page of `item` if it is one of the
/// configuration's entries. True when `item` is a node of this configuration.
bool select_item(Configuration& configuration, HWND parent, HTREEITEM item);
