#pragma once
/// What a user does. A step names what it acts on by numbers, which are reduced to the number of things that
/// exist at that time. So every part of a list of steps is also a valid list.
#include "random/chance.h"

#include <string>
#include <vector>

namespace random_user {

enum class Action {
    item,       ///< clicks on one of the tree's items
    expander,   ///< opens or closes an item with the mouse
    control,    ///< clicks on one of the page's controls
    background, ///< clicks beside all controls
    key,        ///< presses a key
    text,       ///< types a text
    test,       ///< presses Test Connection
    leave,      ///< turns to another program's window and comes back
    minimise,   ///< minimises the window and restores it
    resize,     ///< drags the window to another size
    ok,         ///< presses OK
    close,      ///< presses Close or Cancel
    shut,       ///< closes the window by its frame
};

/// What happens while the box is open that the step brings up, if it brings up one; and, where another
/// process has a hand in it, while the agent's service stops.
enum class Meanwhile {
    nothing,
    leave,  ///< the user turns to another program's window and comes back
    item,   ///< clicks on one of the tree's items
    window, ///< clicks into the main window
    shut,   ///< closes it by its frame
    again,  ///< presses once more what has brought up the box
    select, ///< another process selects an item
    order,  ///< another process tells the window to close
    end,    ///< the system asks whether the session may end
};

struct Step {
    Action action;
    unsigned number;
    bool other_way;
    int key;
    std::string text;
    Meanwhile meanwhile;
};

Step make_step(Chance& chance);
/// This number of steps, and then one that ends the session.
std::vector<Step> make_steps(Chance& chance, std::size_t count);

} // namespace random_user
