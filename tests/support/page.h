#pragma once
/// For tests of the pages: a window that replaces the main window, and access to its controls.
#include "platform/win32.h"
#include "support/test_window.h"
#include "window/controls.h"

#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

/// What an entry takes its title and its help text from.
inline constexpr std::string_view title_and_help = "Title\nValue\nHelp";

/// The main window (window/top_level.h) as long as it exists.
class StandInMainWindow {
public:
    StandInMainWindow(int client_width, int client_height);
    StandInMainWindow(const StandInMainWindow&) = delete;
    StandInMainWindow& operator=(const StandInMainWindow&) = delete;
    ~StandInMainWindow();

    HWND window() const { return window_; }
    void resize(int client_width, int client_height);
    /// Handles the messages in the queue and returns the number of page-changed messages, which have no
    /// parameters, since the last call.
    int page_changes();
    /// The frame of the page shown, or null.
    HWND group_box() const;
    /// The controls of the page shown, in the order of their creation: the help text is the first.
    std::vector<HWND> controls() const;
    HWND control(std::size_t index) const { return controls().at(index); }
    /// Controls that were destroyed one by one, in order; those that went with their parents are not among
    /// them.
    static const std::vector<HWND>& destroyed();
    /// Runs right after the system created a control of the page.
    static void when_created(std::function<void(HWND)> step);

private:
    HWND window_;
};

std::ostream& operator<<(std::ostream& stream, const Placement& placement);

Placement placement_of(HWND control);
std::vector<HWND> children_of(HWND parent);
std::string class_of(HWND window);
LONG_PTR style_of(HWND window);
LONG_PTR extended_style_of(HWND window);
HFONT font_of(HWND window);
bool is_checked(HWND checkbox);
/// Clicks the button and types the text as a user does.
void click(HWND button);
void type(HWND edit_control, const std::string& text);
