#include "substitute/calls.h"
#include "substitute/control/dialogs.h"
#include "substitute/dialogs/modal_dialog.h"
#include "substitute/kernel/kernel.h"
#include "substitute/windows/user.h"

#include <algorithm>
#include <cstring>
#include <deque>

namespace substitute {
namespace {

struct Dialogs {
    std::deque<std::optional<std::string>> choices;
    std::vector<ShownFileDialog> shown;
    DWORD error = 0;
};

Dialogs& dialogs() {
    static Dialogs instance;
    return instance;
}

const ResetHook reset_hook([] { dialogs() = Dialogs{}; });

/// A filter is a list of texts that an empty one ends.
std::string filter_text(LPCSTR filter) {
    std::string result;
    for (LPCSTR each = filter; each != nullptr && *each != '\0'; each += std::strlen(each) + 1)
        result.append(result.empty() ? 0 : 1, '\0').append(each);
    return result;
}

std::string text_of(LPCSTR text) { return text == nullptr ? "" : text; }

/// Names with which Windows' dialog does not open, although Wine's does.
bool is_no_name(const std::string& file) { return file.find_first_of("<>|\"") != std::string::npos; }

BOOL refuse(DWORD error) {
    dialogs().error = error;
    return FALSE;
}

std::optional<std::string> next_choice() {
    if (dialogs().choices.empty())
        return std::nullopt;
    auto choice = dialogs().choices.front();
    dialogs().choices.pop_front();
    return choice;
}

std::wstring folder_of(const std::string& path) {
    const std::string folder = path.substr(0, path.find_last_of('\\'));
    return {folder.begin(), folder.end()};
}

} // namespace

void choose_next_file(std::optional<std::string> path) { dialogs().choices.push_back(std::move(path)); }
const std::vector<ShownFileDialog>& shown_file_dialogs() { return dialogs().shown; }

} // namespace substitute

using namespace substitute;

BOOL GetOpenFileNameA(LPOPENFILENAMEA details) {
    dialogs().error = failing("GetOpenFileNameA", CDERR_INITIALIZATION);
    if (dialogs().error != 0)
        return FALSE;
    if (details->lStructSize != sizeof *details)
        return refuse(CDERR_STRUCTSIZE);
    dialogs().shown.push_back({*details, filter_text(details->lpstrFilter), text_of(details->lpstrFile),
                               text_of(details->lpstrTitle)});
    if (is_no_name(dialogs().shown.back().initial_file))
        return refuse(FNERR_INVALIDFILENAME);
    const ModalDialog dialog(details->hwndOwner, details->lpstrTitle);
    const auto choice = next_choice();
    if (!choice)
        return FALSE;
    if (choice->size() >= details->nMaxFile)
        return refuse(FNERR_BUFFERTOOSMALL);
    change_current_folder(folder_of(*choice));
    std::copy_n(choice->c_str(), choice->size() + 1, details->lpstrFile);
    return TRUE;
}

DWORD CommDlgExtendedError() { return dialogs().error; }
