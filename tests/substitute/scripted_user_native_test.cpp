#include "substitute/control.h"
#include "support/test_window.h"
#include "support/user.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class ScriptedUser : public TestWindow {};

TEST_F(ScriptedUser, AProgramThatWouldWaitForEverIsEnded) {
    MSG message{};
    EXPECT_DEATH(GetMessageA(&message, nullptr, 0, 0), "no scripted step of the user is left");
}

TEST_F(ScriptedUser, AStepThatChangesNothingLeadsToTheNext) {
    int steps = 0;
    substitute::then([&] { ++steps; });
    substitute::then([&] {
        ++steps;
        PostQuitMessage(0);
    });
    MSG message{};
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(steps, 2);
    EXPECT_EQ(substitute::steps_left(), 0U);
}

TEST_F(ScriptedUser, AStepMayComeWhileTheProgramOnlyLooksForMessages) {
    substitute::when_peeked([this] { PostMessageA(window, WM_APP, 0, 0); });
    MSG message{};
    EXPECT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_FALSE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
}

TEST_F(ScriptedUser, ABoxWithoutAnswerGetsItsFirstButton) {
    EXPECT_EQ(MessageBoxA(nullptr, "t", "c", MB_YESNO), IDYES);
    EXPECT_EQ(MessageBoxA(nullptr, "t", "c", MB_OKCANCEL), IDOK);
    ASSERT_EQ(substitute::shown_boxes().size(), 2U);
    EXPECT_EQ(substitute::shown_boxes()[0].style, MB_YESNO);
}

TEST_F(ScriptedUser, LeavingForAnotherProgramTakesActivityAndFocusAway) {
    const HWND edit = add("Edit", 0);
    SetFocus(edit);
    forget();
    substitute::leave_program();
    EXPECT_EQ(GetActiveWindow(), nullptr);
    EXPECT_EQ(GetFocus(), nullptr);
    EXPECT_EQ(count(WM_ACTIVATE), 1);
    EXPECT_THAT(commands(edit), ElementsAre(EN_KILLFOCUS));
    substitute::return_to_program();
    EXPECT_EQ(GetActiveWindow(), window);
    EXPECT_EQ(GetFocus(), window) << "not the control that had it";
    EXPECT_EQ(count(WM_ACTIVATE), 2);
}

TEST_F(ScriptedUser, WhoLeavesAMinimisedWindowIsTold) {
    ShowWindow(window, SW_MINIMIZE);
    forget();
    substitute::leave_program();
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0].message, WM_ACTIVATE);
    EXPECT_EQ(told[0].wparam, MAKEWPARAM(static_cast<int>(WA_INACTIVE), 1));
    ShowWindow(window, SW_RESTORE);
    EXPECT_EQ(GetActiveWindow(), window);
    EXPECT_EQ(GetFocus(), window);
}

TEST_F(ScriptedUser, AClickBringsAWindowInFrontFirst) {
    const HWND edit = add("Edit", 0);
    substitute::while_next_box([&] {
        EXPECT_NE(GetActiveWindow(), window);
        forget();
        substitute::click(edit);
    });
    MessageBoxA(nullptr, "t", "c", MB_OK);
    ASSERT_GE(told.size(), 2U);
    EXPECT_EQ(told[0].message, WM_ACTIVATE);
    EXPECT_EQ(LOWORD(told[0].wparam), WA_CLICKACTIVE);
    EXPECT_EQ(told[1].message, WM_SETFOCUS);
    EXPECT_EQ(GetFocus(), edit);
}

/// So it is under Wine with a real mouse.
TEST_F(ScriptedUser, AClickElsewhereClosesAnOpenListAndPutsItsChoiceBack) {
    const HWND combo = add("ComboBox", CBS_DROPDOWNLIST);
    const HWND button = add("Button", 0);
    for (const char* option : {"low", "high"})
        SendMessageA(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(option));
    substitute::click(combo);
    substitute::press(VK_DOWN);
    pump_messages();
    EXPECT_EQ(SendMessageA(combo, CB_GETCURSEL, 0, 0), 0);
    forget();
    substitute::click(button);
    pump_messages();
    EXPECT_EQ(SendMessageA(combo, CB_GETCURSEL, 0, 0), CB_ERR);
    EXPECT_EQ(SendMessageA(combo, CB_GETDROPPEDSTATE, 0, 0), FALSE);
    EXPECT_THAT(commands(combo), ElementsAre(CBN_SELENDCANCEL, CBN_CLOSEUP));
    EXPECT_TRUE(commands(button).empty());
    EXPECT_EQ(GetFocus(), combo);
}

/// So it is on Windows; Wine enables the owner of a box in any case.
TEST_F(ScriptedUser, AnOwnerThatWasDisabledBeforeABoxStaysSo) {
    EnableWindow(window, FALSE);
    MessageBoxA(window, "t", "c", MB_OK);
    EXPECT_FALSE(IsWindowEnabled(window));
}

TEST_F(ScriptedUser, ResettingLeavesNothingBehind) {
    const HWND stale = window;
    PostMessageA(window, WM_APP, 0, 0);
    PostQuitMessage(1);
    substitute::press(VK_TAB);
    substitute::answer_next_box(IDNO);
    substitute::then([] {});
    substitute::reset();
    EXPECT_EQ(substitute::open_windows(), 0U);
    EXPECT_EQ(substitute::steps_left(), 0U);
    EXPECT_EQ(substitute::answers_left(), 0U);
    EXPECT_EQ(GetFocus(), nullptr);
    EXPECT_EQ(GetActiveWindow(), nullptr);
    MSG message{};
    EXPECT_FALSE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
    const HWND other =
        CreateWindowExA(0, "Static", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    EXPECT_NE(other, stale);
    EXPECT_FALSE(IsWindow(stale));
}

TEST_F(ScriptedUser, WindowsAreCounted) {
    const std::size_t before = substitute::open_windows();
    const HWND box = add("Button", BS_GROUPBOX);
    add_to(box, "Edit", 0);
    EXPECT_EQ(substitute::open_windows(), before + 2);
    DestroyWindow(box);
    EXPECT_EQ(substitute::open_windows(), before);
}

int CALLBACK note_places(HWND dialog, UINT message, LPARAM item, LPARAM) {
    char path[MAX_PATH] = "";
    if (message == BFFM_INITIALIZED)
        SendMessageA(dialog, BFFM_SETSELECTIONA, TRUE, reinterpret_cast<LPARAM>("C:\\start"));
    if (message == BFFM_SELCHANGED) {
        SendMessageA(dialog, BFFM_ENABLEOK, 0,
                     SHGetPathFromIDListA(reinterpret_cast<LPITEMIDLIST>(item), path) ? TRUE : FALSE);
    }
    return 0;
}

TEST_F(ScriptedUser, TheFolderBrowserShowsEveryPlaceThatIsClicked) {
    substitute::choose_next_folder({{"", "C:\\agent"}, true});
    char name[MAX_PATH] = "";
    BROWSEINFOA details{window, nullptr, name, "title", BIF_RETURNONLYFSDIRS, note_places, 0, 0};
    const PIDLIST_ABSOLUTE place = SHBrowseForFolderA(&details);
    char path[MAX_PATH] = "";
    EXPECT_TRUE(SHGetPathFromIDListA(place, path));
    EXPECT_STREQ(path, "C:\\agent");
    ASSERT_EQ(substitute::shown_folder_browsers().size(), 1U);
    const auto& shown = substitute::shown_folder_browsers()[0];
    EXPECT_EQ(shown.owner, window);
    EXPECT_EQ(shown.title, "title");
    EXPECT_EQ(shown.flags, BIF_RETURNONLYFSDIRS);
    EXPECT_FALSE(shown.has_root);
    EXPECT_THAT(shown.selections, ElementsAre("C:\\start"));
    EXPECT_THAT(shown.ok_enabled, ElementsAre(false, true));
    EXPECT_EQ(substitute::places_held(), 1U);
    CoTaskMemFree(place);
    EXPECT_EQ(substitute::places_held(), 0U);
}

TEST_F(ScriptedUser, ACancelledFolderBrowserLeavesNoPlaceBehind) {
    substitute::choose_next_folder({{"C:\\a", "C:\\b"}, false});
    BROWSEINFOA details{window, nullptr, nullptr, nullptr, 0, nullptr, 0, 0};
    EXPECT_EQ(SHBrowseForFolderA(&details), nullptr);
    EXPECT_EQ(SHBrowseForFolderA(&details), nullptr) << "a browser without a script is cancelled, too";
    EXPECT_EQ(substitute::places_held(), 0U);
}

TEST_F(ScriptedUser, APlaceWhosePathIsTooLongHasNone) {
    substitute::choose_next_folder({{std::string(300, 'x')}, true});
    BROWSEINFOA details{window, nullptr, nullptr, nullptr, 0, nullptr, 0, 0};
    const PIDLIST_ABSOLUTE place = SHBrowseForFolderA(&details);
    char path[MAX_PATH] = "left";
    EXPECT_FALSE(SHGetPathFromIDListA(place, path));
    EXPECT_STREQ(path, "");
    CoTaskMemFree(place);
}

TEST_F(ScriptedUser, TheFileDialogNotesWhatItWasAsked) {
    substitute::choose_next_file("C:\\agent\\log.txt");
    char path[MAX_PATH] = "C:\\first.txt";
    OPENFILENAMEA details{};
    details.lStructSize = sizeof details;
    details.hwndOwner = window;
    details.lpstrFilter = "*.log\0";
    details.lpstrFile = path;
    details.nMaxFile = sizeof path;
    details.lpstrTitle = "File selection...";
    EXPECT_TRUE(GetOpenFileNameA(&details));
    EXPECT_STREQ(path, "C:\\agent\\log.txt");
    const auto& shown = substitute::shown_file_dialogs().at(0);
    EXPECT_EQ(shown.filter, "*.log");
    EXPECT_EQ(shown.initial_file, "C:\\first.txt");
    EXPECT_EQ(shown.title, "File selection...");
    EXPECT_EQ(shown.details.hwndOwner, window);
    details.nMaxFile = 5;
    substitute::choose_next_file("C:\\agent\\log.txt");
    EXPECT_FALSE(GetOpenFileNameA(&details)) << "the path does not fit";
    substitute::choose_next_file(std::nullopt);
    EXPECT_FALSE(GetOpenFileNameA(&details));
}

TEST_F(ScriptedUser, ComKnowsHowOftenItWasInitialised) {
    EXPECT_FALSE(substitute::common_controls_initialized());
    InitCommonControls();
    EXPECT_TRUE(substitute::common_controls_initialized());
    EXPECT_EQ(CoInitialize(nullptr), S_OK);
    EXPECT_EQ(CoInitialize(nullptr), S_FALSE);
    CoUninitialize();
    EXPECT_EQ(substitute::com_initialized(), 1);
}

} // namespace
