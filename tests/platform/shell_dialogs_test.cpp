#include "support/dialogs.h"
#include "support/recorder.h"
#include "support/user.h"

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::SizeIs;

class ShellDialogs : public RecorderTest {
protected:
    HWND window = nullptr;

    void SetUp() override {
        RecorderTest::SetUp();
        InitCommonControls();
        const HRESULT result = CoInitialize(nullptr);
        ASSERT_TRUE(result == S_OK || result == S_FALSE);
        window = open("main", WS_OVERLAPPEDWINDOW | WS_VISIBLE);
        pump_messages();
    }
    void TearDown() override {
        CoUninitialize();
        RecorderTest::TearDown();
    }
};

/// The messages of the folder browser to its caller.
struct Browse {
    std::string folder;
    std::vector<UINT> told;
    std::vector<std::string> paths;

    static int CALLBACK callback(HWND dialog, UINT message, LPARAM item, LPARAM data) {
        auto& self = *reinterpret_cast<Browse*>(data);
        self.told.push_back(message);
        if (message == BFFM_INITIALIZED && !self.folder.empty())
            SendMessageA(dialog, BFFM_SETSELECTIONA, TRUE, reinterpret_cast<LPARAM>(self.folder.c_str()));
        if (message == BFFM_SELCHANGED)
            self.paths.push_back(path_of(reinterpret_cast<LPITEMIDLIST>(item)));
        return 0;
    }
    static std::string path_of(LPITEMIDLIST place) {
        char path[MAX_PATH] = "";
        return SHGetPathFromIDListA(place, path) ? path : "no path";
    }
    /// The path of the folder that was chosen; "none" when the browser was cancelled.
    std::string run(HWND owner) {
        char name[MAX_PATH] = "";
        BROWSEINFOA details{};
        details.hwndOwner = owner;
        details.pszDisplayName = name;
        details.lpszTitle = "title";
        details.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
        details.lpfn = callback;
        details.lParam = reinterpret_cast<LPARAM>(this);
        const LPITEMIDLIST place = SHBrowseForFolderA(&details);
        std::string path = place == nullptr ? "none" : path_of(place);
        CoTaskMemFree(place);
        return path;
    }
};

TEST_F(ShellDialogs, TheBrowserSaysWhenItIsReadyAndWhatIsSelected) {
    Browse browse{existing_folder(), {}, {}};
    accept_folder(existing_folder());
    EXPECT_EQ(browse.run(window), existing_folder());
    ASSERT_THAT(browse.told, SizeIs(testing::Ge(2U)));
    EXPECT_EQ(std::count(browse.told.begin(), browse.told.end(), static_cast<UINT>(BFFM_INITIALIZED)), 1);
    EXPECT_EQ(browse.paths.back(), existing_folder());
}

TEST_F(ShellDialogs, ACancelledBrowserGivesNoPlace) {
    Browse browse{existing_folder(), {}, {}};
    cancel_folder_browser();
    EXPECT_EQ(browse.run(window), "none");
    EXPECT_THAT(browse.told, Contains(static_cast<UINT>(BFFM_INITIALIZED)));
}

TEST_F(ShellDialogs, TheBrowsersOwnerIsDisabledMeanwhile) {
    watch({WM_ENABLE});
    Browse browse{};
    cancel_folder_browser();
    browse.run(window);
    EXPECT_THAT(take_log(), ElementsAre("main enable", "main enable"));
    EXPECT_TRUE(IsWindowEnabled(window));
}

/// Runs the open-file dialog on `file`; the path chosen, or "none".
std::string open_file(HWND owner, const std::string& file, DWORD size = sizeof(OPENFILENAMEA)) {
    char path[MAX_PATH] = "";
    file.copy(path, sizeof path - 1);
    OPENFILENAMEA details{};
    details.lStructSize = size;
    details.hwndOwner = owner;
    details.lpstrFilter = "*.*\0";
    details.lpstrFile = path;
    details.nMaxFile = sizeof path;
    details.lpstrTitle = "File selection...";
    details.Flags =
        OFN_HIDEREADONLY | OFN_FILEMUSTEXIST | OFN_SHAREAWARE | OFN_EXPLORER | OFN_NODEREFERENCELINKS;
    return GetOpenFileNameA(&details) ? path : "none";
}

TEST_F(ShellDialogs, TheFileDialogGivesThePathThatIsAccepted) {
    accept_file(existing_file());
    EXPECT_EQ(open_file(window, existing_file()), existing_file());
}

std::wstring current_folder() {
    std::wstring path(GetCurrentDirectoryW(0, nullptr), L'\0');
    path.resize(GetCurrentDirectoryW(static_cast<DWORD>(path.size()), path.data()));
    return path;
}

TEST_F(ShellDialogs, TheFileDialogTakesTheProgramToTheFilesFolder) {
    const std::wstring before = current_folder();
    accept_file(existing_file());
    open_file(window, existing_file());
    const std::string folder = existing_folder();
    EXPECT_EQ(current_folder(), std::wstring(folder.begin(), folder.end()));
    EXPECT_TRUE(SetCurrentDirectoryW(before.c_str()));
    EXPECT_EQ(current_folder(), before);
}

TEST_F(ShellDialogs, ACancelledFileDialogGivesNone) {
    cancel_file_dialog();
    EXPECT_EQ(open_file(window, existing_file()), "none");
    EXPECT_EQ(CommDlgExtendedError(), 0U);
}

TEST_F(ShellDialogs, TheFileDialogsOwnerIsDisabledMeanwhile) {
    watch({WM_ENABLE});
    cancel_file_dialog();
    open_file(window, existing_file());
    EXPECT_THAT(take_log(), ElementsAre("main enable", "main enable"));
    EXPECT_TRUE(IsWindowEnabled(window));
}

TEST_F(ShellDialogs, ARecordOfTheWrongSizeIsRefusedWithAReason) {
    EXPECT_EQ(open_file(window, "", 7), "none");
    EXPECT_EQ(CommDlgExtendedError(), static_cast<DWORD>(CDERR_STRUCTSIZE));
    cancel_file_dialog();
    open_file(window, "");
    EXPECT_EQ(CommDlgExtendedError(), 0U) << "about the last dialog alone";
}

} // namespace
