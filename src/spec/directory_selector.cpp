#include "spec/directory_selector.h"

#include "window/guard.h"

#include <array>
#include <memory>
#include <utility>

namespace {

constexpr TextAndButton folder_box{.text_box_failure = "Unable to create dir box",
                                   .button_text = "...",
                                   .button_failure = "Unable to create dir button",
                                   .text_box_narrower = 60,
                                   .button_from_right = 40,
                                   .button_above_bottom = 30,
                                   .button_width = 30,
                                   .button_height = 20};

using PathBuffer = std::array<char, MAX_PATH>;

/// Items that are no folders of the file system cannot be chosen.
void allow_real_folders_only(HWND browser, LPCITEMIDLIST item) {
    PathBuffer path{};
    const BOOL real = SHGetPathFromIDListA(item, path.data());
    SendMessageA(browser, BFFM_ENABLEOK, 0, real ? TRUE : FALSE);
}

/// `folder` is where the browser opens.
void steer(HWND browser, UINT message, LPARAM item, LPARAM folder) {
    switch (message) {
    case BFFM_INITIALIZED: SendMessageA(browser, BFFM_SETSELECTIONA, TRUE, folder); break;
    case BFFM_SELCHANGED: allow_real_folders_only(browser, reinterpret_cast<LPCITEMIDLIST>(item)); break;
    default: break;
    }
}

int CALLBACK browser_callback(HWND browser, UINT message, LPARAM item, LPARAM folder) {
    const auto steered = [&]() -> LRESULT {
        steer(browser, message, item, folder);
        return 0;
    };
    return static_cast<int>(guarded(0, steered, [] { return LRESULT{0}; }));
}

struct ItemDeleter {
    void operator()(LPITEMIDLIST item) const { CoTaskMemFree(item); }
};
using OwnedItem = std::unique_ptr<std::remove_pointer_t<LPITEMIDLIST>, ItemDeleter>;

/// Null when the user cancels.
OwnedItem browse(HWND owner, PathBuffer& start) {
    PathBuffer display_name{};
    BROWSEINFOA request{};
    request.hwndOwner = owner;
    request.pszDisplayName = display_name.data();
    request.lpszTitle = "\r\nPlease select a folder to use:";
    request.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
    request.lpfn = &browser_callback;
    request.lParam = reinterpret_cast<LPARAM>(start.data());
    OwnedItem chosen(SHBrowseForFolderA(&request));
    rethrow_kept();
    return chosen;
}

} // namespace

DirectorySelector::DirectorySelector(CommonRegKey binding, std::string_view title, std::string_view help_text)
    : TextAndButtonEntry(std::move(binding), title, help_text, folder_box) {}

void DirectorySelector::button_pressed() {
    PathBuffer start{};
    GetWindowTextA(text_box(), start.data(), static_cast<int>(start.size()));
    const OwnedItem chosen = browse(group_box(), start);
    PathBuffer path{};
    if (chosen && SHGetPathFromIDListA(chosen.get(), path.data()))
        replace_value(path.data());
}
