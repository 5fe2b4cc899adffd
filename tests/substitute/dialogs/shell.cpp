#include "substitute/dialogs/shell.h"

#include "substitute/calls.h"
#include "substitute/control/dialogs.h"
#include "substitute/controls/controls.h"
#include "substitute/dialogs/modal_dialog.h"
#include "substitute/kernel/kernel.h"
#include "substitute/windows/user.h"

#include <deque>
#include <map>

namespace substitute {
namespace {

constexpr HRESULT out_of_memory = static_cast<HRESULT>(0x8007000E);

struct Shell {
    std::deque<FolderChoice> choices;
    std::vector<ShownFolderBrowser> shown;
    std::map<const void*, std::string> places;
    int com = 0;
    bool common_controls = false;
};

Shell& shell() {
    static Shell instance;
    return instance;
}

void free_places() {
    for (const auto& place : shell().places)
        delete static_cast<const ITEMIDLIST*>(place.first);
    shell() = Shell{};
}

const ResetHook reset_hook(free_places);

PIDLIST_ABSOLUTE hand_out(const std::string& path) {
    auto* place = new ITEMIDLIST{};
    shell().places[place] = path;
    return place;
}

void note_browser(const BROWSEINFOA& details) {
    shell().shown.push_back({details.hwndOwner,
                             details.lpszTitle == nullptr ? "" : details.lpszTitle,
                             details.ulFlags,
                             details.pidlRoot != nullptr,
                             details.pszDisplayName != nullptr,
                             {},
                             {}});
}

/// Shows the program every place that the user clicks; returns the last one, which the caller frees.
LPVOID click_through(HWND browser, const BROWSEINFOA& details, const FolderChoice& choice) {
    LPVOID last = nullptr;
    for (const std::string& path : choice.clicked) {
        CoTaskMemFree(last);
        last = hand_out(path);
        if (details.lpfn != nullptr)
            details.lpfn(browser, BFFM_SELCHANGED, reinterpret_cast<LPARAM>(last), details.lParam);
    }
    return last;
}

FolderChoice next_choice() {
    if (shell().choices.empty())
        return {{}, false};
    FolderChoice choice = std::move(shell().choices.front());
    shell().choices.pop_front();
    return choice;
}

PIDLIST_ABSOLUTE run_browser(HWND browser, const BROWSEINFOA& details) {
    if (details.lpfn != nullptr)
        details.lpfn(browser, BFFM_INITIALIZED, 0, details.lParam);
    const FolderChoice choice = next_choice();
    const LPVOID last = click_through(browser, details, choice);
    if (choice.accepted)
        return static_cast<PIDLIST_ABSOLUTE>(last);
    CoTaskMemFree(last);
    return nullptr;
}

} // namespace

/// Handles the messages that the program's callback sends to the browser.
LRESULT folder_browser_procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == BFFM_SETSELECTIONA && wparam != 0) {
        shell().shown.back().selections.emplace_back(reinterpret_cast<LPCSTR>(lparam));
    } else if (message == BFFM_ENABLEOK) {
        shell().shown.back().ok_enabled.push_back(lparam != 0);
    } else {
        return DefWindowProcA(handle, message, wparam, lparam);
    }
    return 0;
}

void choose_next_folder(FolderChoice choice) { shell().choices.push_back(std::move(choice)); }
const std::vector<ShownFolderBrowser>& shown_folder_browsers() { return shell().shown; }
std::size_t places_held() { return shell().places.size(); }
int com_initialized() { return shell().com; }
bool common_controls_initialized() { return shell().common_controls; }

} // namespace substitute

using namespace substitute;

void InitCommonControls() {
    if (!failing("InitCommonControls", ERROR_NOT_ENOUGH_MEMORY))
        shell().common_controls = true;
}

HRESULT CoInitialize(LPVOID) {
    if (failing("CoInitialize", ERROR_NOT_ENOUGH_MEMORY))
        return out_of_memory;
    return ++shell().com == 1 ? S_OK : S_FALSE;
}

void CoUninitialize() { --shell().com; }

void CoTaskMemFree(LPVOID memory) {
    if (shell().places.erase(memory) > 0)
        delete static_cast<ITEMIDLIST*>(memory);
}

PIDLIST_ABSOLUTE SHBrowseForFolderA(LPBROWSEINFOA details) {
    if (failing("SHBrowseForFolderA", ERROR_NOT_ENOUGH_MEMORY))
        return nullptr;
    note_browser(*details);
    const ModalDialog browser(details->hwndOwner, "Browse for Folder", folder_browser_class);
    return run_browser(browser.handle(), *details);
}

BOOL SHGetPathFromIDListA(PCIDLIST_ABSOLUTE place, LPSTR path) {
    if (failing("SHGetPathFromIDListA", ERROR_NOT_ENOUGH_MEMORY))
        return FALSE;
    const auto found = shell().places.find(place);
    const bool has_path = found != shell().places.end() && !found->second.empty() &&
                          found->second.size() < static_cast<std::size_t>(MAX_PATH);
    path[has_path ? found->second.copy(path, MAX_PATH - 1) : 0] = '\0';
    return has_path;
}
