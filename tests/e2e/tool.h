#pragma once
/// The finished program, driven from outside: its window, its pages, its boxes, its end.
#include "e2e/process.h"
#include "e2e/remote_tree.h"
#include "platform/win32.h"

#include <string>
#include <vector>

namespace e2e {

/// The main window's controls.
enum Control { tree_id = 101, close_id = 103, ok_id = 104, test_connection = 105 };

/// A message box of the program.
struct Box {
    HWND window;
    std::string caption;
    std::string text;

    /// Presses the button with this identifier (IDOK, IDYES, IDNO) and waits until the box is gone.
    void press(int button) const;
};

/// The shown entry's page.
struct Page {
    HWND frame;
    std::string title;
    std::string help;
    /// The entry's own controls in the order of their creation.
    std::vector<HWND> controls;
};

/// A run of the program. A wait that fails throws std::runtime_error.
class Tool {
public:
    /// Starts the program, or the one that TAVRIN_TESTED_PROGRAM names, and waits for nothing.
    Tool();
    /// Starts a copy of the program.
    explicit Tool(const std::string& command_line);

    /// Waits for the main window.
    HWND window();
    /// Whether the main window is there now.
    bool has_window() const;
    /// A control of the main window.
    HWND control(Control id);
    RemoteTree tree();
    /// Selects an item by message and waits for its page.
    void select(const TreePath& path);
    /// Waits for the page of the entry with this title.
    Page page(const std::string& title);
    /// Whether a page is shown.
    bool shows_page();
    /// Clicks on one of the main window's buttons without waiting for the result.
    void press(Control button);
    /// A button of the page, found by its text.
    HWND page_button(const std::string& title, const std::string& button);
    /// Clicks on it.
    void press_on_page(const std::string& title, const std::string& button);

    /// Waits until the buttons stand as they do with (or without) changes to save.
    void expect_changes(bool changes);
    /// Waits for a message box.
    Box box();
    /// Waits for one of the system's dialogs, found by its caption.
    HWND dialog(const std::string& caption);
    /// Waits for the wait window.
    HWND wait_window();
    /// Whether the wait window is shown.
    bool shows_wait_window() const;

    bool running() const { return process.running(); }
    /// The process, open for everything.
    HANDLE process_handle() const { return process.handle(); }
    /// Waits for the program's end.
    DWORD exit_code(int seconds = 90) { return process.exit_code(seconds); }
    /// The program's output on its standard error stream.
    std::string errors() const { return process.output(); }

private:
    HWND find(const char* window_class, const std::string& caption = "") const;

    Process process;
};

} // namespace e2e
