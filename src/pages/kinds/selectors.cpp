#include "pages/kinds/selectors.h"

#include "window/guard.h"
#include "window/top_level.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace {

using PathBuffer = std::array<char, MAX_PATH>;

constexpr TextAndButton folder_box{.text_box_failure = "Unable to create dir box",
                                   .button_text = "...",
                                   .button_failure = "Unable to create dir button",
                                   .text_box_narrower = 60,
                                   .button_from_right = 40,
                                   .button_above_bottom = 30,
                                   .button_width = 30,
                                   .button_height = 20};

/// Keeps the user from choosing items that are not folders of the file system.
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
    default: break; // only the system's own browser tells more; the tests under Wine open it
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

constexpr TextAndButton file_box{.text_box_failure = "Unable to create file box",
                                 .button_text = "...",
                                 .button_failure = "Unable to create file button",
                                 .text_box_narrower = 60,
                                 .button_from_right = 40,
                                 .button_above_bottom = 30,
                                 .button_width = 30,
                                 .button_height = 20};

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

/// Restores the program's current folder when it is destroyed. The dialog changes it to the file's folder,
/// and a USB stick or a network share cannot be removed while it has a program's current folder.
class CurrentFolder {
public:
    CurrentFolder() : path_(GetCurrentDirectoryW(0, nullptr), L'\0') {
        GetCurrentDirectoryW(static_cast<DWORD>(path_.size()), path_.data());
    }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;
    ~CurrentFolder() { SetCurrentDirectoryW(path_.c_str()); }

private:
    std::wstring path_;
};

/// False when the user cancels, or the dialog does not open.
bool is_accepted(OPENFILENAMEA& request) {
    const CurrentFolder folder;
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
    // With an invalid file name the dialog does not open at all, and the button would seem to do nothing.
    file.fill('\0');
    return is_accepted(request);
}

} // namespace

TextAndButtonEntry::TextAndButtonEntry(CommonRegKey binding, std::string_view subspec,
                                       const TextAndButton& kind)
    : BaseEntry(subspec), CommonRegKey(std::move(binding)), kind_(kind) {}

void TextAndButtonEntry::createControls(HWND parent) {
    BaseEntry::createControls(parent);
    page().control = create_control(page().group_box, {.window_class = "Edit",
                                                       .style = ES_AUTOHSCROLL,
                                                       .extended_style = WS_EX_CLIENTEDGE,
                                                       .failure = kind_.text_box_failure});
    page().button = create_control(
        page().group_box,
        {.window_class = "Button", .text = kind_.button_text, .failure = kind_.button_failure});
}

void TextAndButtonEntry::destroyControls(HWND parent) {
    destroy_control(page().button);
    destroy_control(page().control);
    BaseEntry::destroyControls(parent);
}

void TextAndButtonEntry::layout(HWND parent) {
    BaseEntry::layout(parent);
    const RECT frame = client_rectangle(page().group_box);
    place(text_box(),
          {.x = 10, .y = frame.bottom - 30, .width = frame.right - kind_.text_box_narrower, .height = 20});
    place(page().button, {.x = frame.right - kind_.button_from_right,
                          .y = frame.bottom - kind_.button_above_bottom,
                          .width = kind_.button_width,
                          .height = kind_.button_height});
}

void TextAndButtonEntry::showValue() { SetWindowTextA(text_box(), value().c_str()); }

void TextAndButtonEntry::takeValue() { set_value(control_text(text_box())); }

LRESULT TextAndButtonEntry::handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (reports_press(message, wparam))
        button_pressed();
    if (reports(message, wparam, lparam, text_box(), EN_CHANGE))
        post_page_changed();
    return BaseEntry::handleMessage(window, message, wparam, lparam);
}

void TextAndButtonEntry::replace_value(std::string found) {
    // Another process may have selected another item during the wait for the user or the network. The value
    // of a page that is not shown must not change: neither the page nor the buttons would show it.
    if (text_box() == nullptr)
        return;
    set_value(std::move(found));
    showValue();
}

DirectorySelector::DirectorySelector(CommonRegKey binding, std::string_view subspec)
    : TextAndButtonEntry(std::move(binding), subspec, folder_box) {}

void DirectorySelector::button_pressed() {
    PathBuffer start{};
    GetWindowTextA(text_box(), start.data(), static_cast<int>(start.size()));
    const OwnedItem chosen = browse(page().group_box, start);
    PathBuffer path{};
    if (chosen && SHGetPathFromIDListA(chosen.get(), path.data()))
        replace_value(path.data());
}

FileSelector::FileSelector(CommonRegKey binding, std::string_view subspec, std::string extension)
    : TextAndButtonEntry(std::move(binding), subspec, file_box), extension_(std::move(extension)) {}

void FileSelector::button_pressed() {
    PathBuffer file{};
    GetWindowTextA(text_box(), file.data(), static_cast<int>(file.size()));
    if (choose_file(filter_for(extension_), file))
        replace_value(file.data());
}
