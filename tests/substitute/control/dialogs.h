#pragma once
/// The scripted user in the folder browser and in the open-file dialog.
#include "substitute/dialogs/shell.h"

#include <optional>
#include <string>
#include <vector>

namespace substitute {

/// The user's actions in the next folder browser: selects places, then closes it.
struct FolderChoice {
    /// Places that are selected one after the other; an empty path is a place without one (a control panel).
    std::vector<std::string> clicked;
    /// Whether the browser is left with OK; the last place selected is then the result.
    bool accepted = true;
};

/// The program's request to the folder browser, and its messages from the callback.
struct ShownFolderBrowser {
    HWND owner = nullptr;
    std::string title;
    UINT flags = 0;
    bool has_root = false;
    /// Whether there was a buffer for the name of the chosen item.
    bool takes_name = false;
    /// Paths that the program selected with BFFM_SETSELECTIONA.
    std::vector<std::string> selections;
    /// The values of BFFM_ENABLEOK, in order.
    std::vector<bool> ok_enabled;
};

/// A browser without a scripted choice is cancelled.
void choose_next_folder(FolderChoice choice);
const std::vector<ShownFolderBrowser>& shown_folder_browsers();
/// Places that the browser handed out and the program has not freed.
std::size_t places_held();

/// The program's request to the open-file dialog.
struct ShownFileDialog {
    OPENFILENAMEA details{};
    /// Up to the two NULs at its end, which are not kept; empty when there is none.
    std::string filter;
    std::string initial_file;
    std::string title;
};

/// The path that the user picks in the next open-file dialog; none: the dialog is cancelled, as one without a
/// scripted choice is.
void choose_next_file(std::optional<std::string> path);
const std::vector<ShownFileDialog>& shown_file_dialogs();

/// The program's current folder. The open-file dialog makes it that of the chosen file, as Windows' does.
std::wstring current_folder();
void change_current_folder(const std::wstring& path);

/// How often CoInitialize was called without CoUninitialize since.
int com_initialized();
bool common_controls_initialized();

} // namespace substitute
