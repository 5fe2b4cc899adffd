#include "platform/substitute/calls.h"
#include "platform/substitute/control/dialogs.h"
#include "platform/substitute/dialogs/modal_dialog.h"
#include "platform/substitute/kernel/kernel.h"
#include "platform/substitute/windows/user.h"

#include <algorithm>
#include <cstring>
#include <deque>

namespace substitute {
namespace {

struct Dialogs {
    std::deque<std::optional<std::string>> choices;
    std::vector<ShownFileDialog> shown;
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

std::optional<std::string> next_choice() {
    if (dialogs().choices.empty())
        return std::nullopt;
    auto choice = dialogs().choices.front();
    dialogs().choices.pop_front();
    return choice;
}

} // namespace

void choose_next_file(std::optional<std::string> path) { dialogs().choices.push_back(std::move(path)); }
const std::vector<ShownFileDialog>& shown_file_dialogs() { return dialogs().shown; }

} // namespace substitute

using namespace substitute;

BOOL GetOpenFileNameA(LPOPENFILENAMEA details) {
    if (failing("GetOpenFileNameA", ERROR_NOT_ENOUGH_MEMORY) || details->lStructSize != sizeof *details)
        return FALSE;
    dialogs().shown.push_back({*details, filter_text(details->lpstrFilter), text_of(details->lpstrFile),
                               text_of(details->lpstrTitle)});
    const ModalDialog dialog(details->hwndOwner, details->lpstrTitle);
    const auto choice = next_choice();
    if (!choice || choice->size() >= details->nMaxFile)
        return FALSE;
    std::copy_n(choice->c_str(), choice->size() + 1, details->lpstrFile);
    return TRUE;
}
