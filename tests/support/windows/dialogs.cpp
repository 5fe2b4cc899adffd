#include "support/dialogs.h"

#include "platform/win32.h"

/// A timer of the thread's fires in the dialog's own loop. The dialog is left once it is on the screen.
namespace {

const char* awaited_title = nullptr;
int wanted_button = 0;

void CALLBACK tick(HWND, UINT, UINT_PTR timer, DWORD) {
    const HWND dialog = FindWindowA("#32770", awaited_title);
    if (dialog == nullptr || !IsWindowVisible(dialog))
        return;
    KillTimer(nullptr, timer);
    PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(wanted_button, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, wanted_button)));
}

void leave(const char* title, int button) {
    awaited_title = title;
    wanted_button = button;
    SetTimer(nullptr, 0, 10, &tick);
}

} // namespace

void accept_folder(const std::string&) { leave("Browse for Folder", IDOK); }
void cancel_folder_browser() { leave("Browse for Folder", IDCANCEL); }

void accept_file(const std::string&) { leave("File selection...", IDOK); }
void cancel_file_dialog() { leave("File selection...", IDCANCEL); }

std::string existing_folder() {
    char path[MAX_PATH] = "";
    GetWindowsDirectoryA(path, sizeof path);
    return path;
}

std::string existing_file() { return existing_folder() + "\\win.ini"; }
