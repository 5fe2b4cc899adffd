#pragma once
/// What the census asks of the library that it brings into the program under test.

namespace soak {

/// Registered by this name: wParam says what to do, lParam is the address in the program's memory of what is
/// to be filled in, or 0.
constexpr char request_name[] = "tavrin_census_request";

/// The window manager's objects of one process.
struct UserObjects {
    int windows;
    int menus;
    int icons; ///< cursors too
    int accelerators;
};

/// What is in use in all heaps of one process.
struct HeapUse {
    long long blocks;
    long long bytes;
};

enum class Request {
    count_user,  ///< fill in a UserObjects
    count_heap,  ///< fill in a HeapUse
    use_text,    ///< make a text in the system's font, and destroy it
    use_test,    ///< the same with the text of a connection test's wait window, which is wrapped
    use_scan,    ///< the same with the text of a scan's
    leak_window, ///< make one and forget it, and so on
    leak_menu,
    leak_icon,
    leak_brush,
    leak_event,
    leak_block, ///< of memory from the heap
};

} // namespace soak
