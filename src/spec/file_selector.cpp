#include "spec/file_selector.h"

#include "window/guard.h"
#include "window/main_handle.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr TextAndButton file_box{.text_box_failure = "Unable to create file box",
                                 .button_text = "...",
                                 .button_failure = "Unable to create file button",
                                 .text_box_narrower = 60,
                                 .button_from_right = 40,
                                 .button_above_bottom = 30,
                                 .button_width = 30,
                                 .button_height = 20};

using PathBuffer = std::array<char, MAX_PATH>;

/// The dialog's list of filters: one whose description is the pattern itself. All zero, no filter, when the
/// pattern does not fit.
PathBuffer filter_for(const std::string& extension) {
    std::string filter = "*." + (extension.empty() ? std::string("*") : extension);
    filter.append(2, '\0');
    PathBuffer buffer{};
    if (filter.size() <= buffer.size())
        std::copy(filter.begin(), filter.end(), buffer.begin());
    return buffer;
}

/// False when the user cancels, or the dialog does not open.
bool is_accepted(OPENFILENAMEA& request) {
    const BOOL chosen = GetOpenFileNameA(&request);
    rethrow_kept();
    return chosen != FALSE;
}

/// Replaces `file` by the user's choice; false when the user cancels.
bool choose_file(const PathBuffer& filter, PathBuffer& file) {
    OPENFILENAMEA request{};
    static_assert(sizeof request == 152, "the dialog tells its versions apart by this size");
    request.lStructSize = sizeof request;
    request.hwndOwner = main_window;
    request.lpstrFilter = filter.data();
    request.lpstrFile = file.data();
    request.nMaxFile = static_cast<DWORD>(file.size());
    request.lpstrTitle = "File selection...";
    request.Flags =
        OFN_HIDEREADONLY | OFN_FILEMUSTEXIST | OFN_SHAREAWARE | OFN_EXPLORER | OFN_NODEREFERENCELINKS;
    if (is_accepted(request))
        return true;
    if (CommDlgExtendedError() != FNERR_INVALIDFILENAME)
        return false;
    // With what is no file's name the dialog does not open at all, and the button would seem dead.
    file.fill('\0');
    return is_accepted(request);
}

} // namespace

FileSelector::FileSelector(CommonRegKey binding, std::string_view title, std::string_view help_text,
                           std::string extension)
    : TextAndButtonEntry(std::move(binding), title, help_text, file_box), extension_(std::move(extension)) {}

void FileSelector::button_pressed() {
    PathBuffer file{};
    GetWindowTextA(text_box(), file.data(), static_cast<int>(file.size()));
    if (choose_file(filter_for(extension_), file))
        replace_value(file.data());
}
