#pragma once
/// A user who does months of work as fast as the program handles messages.
#include "e2e/tool.h"

namespace soak {

/// Uses a program that shows the sample, whose servers are those of the stage. Throws std::runtime_error if
/// something expected does not happen.
class BusyUser {
public:
    explicit BusyUser(e2e::Tool& tool);

    /// Goes from page to page and edits what each shows; ends on the first page. Two rounds leave every
    /// setting as the two before them did.
    void switch_pages(int rounds);
    int pages_of_a_round() const { return static_cast<int>(round.size()); }
    /// Tests the connection and closes the box that says that all is well.
    void test_the_connection(int times);
    /// Scans for servers; each scan takes some three seconds.
    void scan(int times);
    /// Signals the agent, which opens a box, and closes it.
    void open_and_close_boxes(int times);

    /// The number of texts that were created and destroyed: the help of each page and the message of each
    /// box.
    int texts_shown() const { return texts; }
    /// The number of wait windows that were.
    int tests_made() const { return tests; }
    int scans_made() const { return scans; }

private:
    struct Visit {
        e2e::TreePath path;
        /// What an edit control gets in turn; nothing is edited on the pages of buttons.
        const char* texts[2];
    };
    struct Stop {
        HTREEITEM item;
        std::string title;
        const char* texts[2];
    };
    static const Visit visits[];

    void select(const Stop& stop);
    void show(const e2e::TreePath& path);
    void edit(const Stop& stop, int time);
    /// Waits for the box with this caption, closes it and waits until it is gone.
    void close_box(const std::string& caption);

    e2e::Tool& tool;
    HWND tree;
    std::vector<Stop> round;
    HTREEITEM selected = nullptr;
    int texts = 0;
    int tests = 0;
    int scans = 0;
};

} // namespace soak
