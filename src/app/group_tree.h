#pragma once
#include "pages/configuration.h"

/// Adds the configuration's nodes to the tree and records the entry of each. A configuration without groups
/// gets no nodes; the entries of a group without a name are directly below the configuration's node.
void fill_tree(Configuration& configuration, HWND tree);

/// Takes the values of the page that the configuration shows, if any, records whether they differ from the
/// stored ones, and destroys the page's controls.
void leave_page(Configuration& configuration, HWND parent);

/// Leaves the page that the configuration shows, if any, and shows the page of `item` if it is one of the
/// configuration's entries. True when `item` is a node of this configuration.
bool select_item(Configuration& configuration, HWND parent, HTREEITEM item);
