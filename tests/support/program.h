#pragma once
/// Runs the whole program in the test's own process, with spec files and registry values of the test's and a
/// scripted user, and looks at its window from inside.
#include "platform/win32.h"
#include "support/boxes.h"
#include "support/scratch_folder.h"
#include "support/system.h"
#include "support/test_window.h"
#include "support/user.h"

#include <functional>
#include <string>
#include <vector>

class ProgramTest : public CleanSystem {
protected:
    ProgramTest();
    ~ProgramTest() override;

    /// Writes a spec file and lists it under the program's registry key.
    void spec_file(const std::string& value_name, const std::string& text);
    /// Adds a step of the user, which runs when the window is open and idle.
    void then(std::function<void()> step) { steps.then(std::move(step)); }
    /// Selects that item, then replaces what the first control of its page holds.
    void then_edit(const std::string& item_text, const std::string& text);
    /// The whole program, from start-up to its exit code. A user who has no more steps closes the window.
    int run();
    /// Runs the program, which must succeed, and returns its tree as tree_text does.
    std::string shown_tree();

    Boxes boxes;
    UserSteps steps;

private:
    ScratchFolder folder_;
    int spec_files_ = 0;
};

/// The keys below HKEY_LOCAL_MACHINE that list the spec files and hold the agent's values.
inline const std::string list_key = "SOFTWARE\\Tavrin\\TRConfig";
inline const std::string agent_key = "SOFTWARE\\TavrinTests\\Agent";

HWND control(int id);
/// Every item of the tree, one per line, indented by its depth.
std::string tree_text();
/// The first item with this text, depth first; null when there is none.
HTREEITEM item(const std::string& text);
/// Selects that item as a user would.
void select(const std::string& item_text);
/// The group box of the page that is shown; null when none is.
HWND page();
/// The page's controls after its help text, in creation order.
std::vector<HWND> page_controls();
