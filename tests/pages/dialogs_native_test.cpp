#include "base/exceptions.h"
#include "pages/kinds/actions.h"
#include "pages/kinds/selectors.h"
#include "substitute/control.h"
#include "support/page.h"
#include "support/registry.h"
#include "window/guard.h"

#include <gmock/gmock.h>

namespace {

using namespace std::string_literals;
using substitute::shown_file_dialogs;
using substitute::shown_folder_browsers;
using testing::ElementsAre;

class Dialogs : public CleanSystem {
protected:
    ~Dialogs() override { EXPECT_EQ(substitute::places_held(), 0U); }

    /// Shows the page of the entry and types into its text box.
    void open(BaseEntry& entry, const std::string& typed) {
        entry.select(main.window());
        type(main.control(1), typed);
    }
    static CommonRegKey binding() { return {test_key, "Value", false}; }

    StandInMainWindow main{436, 229};
    DirectorySelector directory{binding(), title_and_help};
};

TEST_F(Dialogs, TheFolderBrowserIsAskedForARealFolder) {
    open(directory, "C:\\agent");
    click(main.control(2));
    ASSERT_EQ(shown_folder_browsers().size(), 1U);
    const auto& browser = shown_folder_browsers()[0];
    EXPECT_EQ(browser.owner, main.group_box());
    EXPECT_EQ(browser.title, "\r\nPlease select a folder to use:");
    EXPECT_EQ(browser.flags, 65U);
    EXPECT_FALSE(browser.has_root);
    EXPECT_TRUE(browser.takes_name);
    EXPECT_THAT(browser.selections, ElementsAre("C:\\agent"));
    EXPECT_EQ(directory.value(), "");
}

TEST_F(Dialogs, TheFolderBrowserOpensAtTheFirst259Characters) {
    open(directory, std::string(2000, 'x'));
    click(main.control(2));
    EXPECT_THAT(shown_folder_browsers()[0].selections, ElementsAre(std::string(259, 'x')));
}

TEST_F(Dialogs, TheFolderBrowserAllowsPlacesWithAPathOnly) {
    open(directory, "");
    substitute::choose_next_folder({{"C:\\agent", "", "C:\\other"}, true});
    click(main.control(2));
    EXPECT_THAT(shown_folder_browsers()[0].ok_enabled, ElementsAre(true, false, true));
    EXPECT_EQ(directory.value(), "C:\\other");
    EXPECT_EQ(text_of(main.control(1)), "C:\\other");
}

TEST_F(Dialogs, APlaceWithoutAPathChangesNothing) {
    open(directory, "typed");
    substitute::choose_next_folder({{""}, true});
    click(main.control(2));
    EXPECT_EQ(directory.value(), "");
    EXPECT_EQ(text_of(main.control(1)), "typed");
}

TEST_F(Dialogs, ABrowserThatFailsChangesNothing) {
    open(directory, "typed");
    substitute::fail_call("SHBrowseForFolderA");
    click(main.control(2));
    EXPECT_EQ(text_of(main.control(1)), "typed");
    substitute::choose_next_folder({{"C:\\agent"}, true});
    substitute::fail_call("SHGetPathFromIDListA", 2); // the first call is about what was clicked
    click(main.control(2));
    EXPECT_EQ(text_of(main.control(1)), "typed");
    EXPECT_EQ(directory.value(), "");
}

/// The program handles messages while a dialog is open; an exception from one of them also ends the step that
/// opened the dialog.
class ThrownDuringDialog : public Dialogs {
protected:
    /// Presses a button that cannot signal its event, as soon as messages are handled again.
    void press_failing_button_later() {
        signal.select(main.window());
        substitute::fail_call("SetEvent", 1, ERROR_ACCESS_DENIED);
        for (const HWND box : children_of(main.window())) {
            if (entryByGroupBox.at(box) == &signal)
                PostMessageA(box, WM_COMMAND, MAKEWPARAM(0, BN_CLICKED), 0);
        }
    }

    SignalEvent signal{"event", "Signal"};
};

TEST_F(ThrownDuringDialog, LeavesTheFolderAlone) {
    open(directory, "typed");
    press_failing_button_later();
    substitute::choose_next_folder({{"C:\\agent"}, true});
    click(main.control(2));
    EXPECT_THROW(rethrow_kept(), error::ESystemError);
    EXPECT_EQ(directory.value(), "");
    EXPECT_EQ(shown_folder_browsers().size(), 1U);
}

TEST_F(ThrownDuringDialog, LeavesTheFileAlone) {
    FileSelector file{binding(), title_and_help, "log"};
    open(file, "typed");
    press_failing_button_later();
    substitute::choose_next_file("C:\\agent.log");
    click(main.control(2));
    EXPECT_THROW(rethrow_kept(), error::ESystemError);
    EXPECT_EQ(file.value(), "");
    EXPECT_EQ(shown_file_dialogs().size(), 1U);
    entryByGroupBox.clear();
}

class FileDialog : public Dialogs {
protected:
    const substitute::ShownFileDialog& shown(const std::string& extension, const std::string& typed) {
        file = std::make_unique<FileSelector>(binding(), title_and_help, extension);
        open(*file, typed);
        click(main.control(2));
        file->deselect(main.window());
        return shown_file_dialogs().back();
    }

    std::unique_ptr<FileSelector> file;
};

TEST_F(FileDialog, IsAskedForAnExistingFile) {
    const auto& dialog = shown("log", "C:\\agent\\agent.log");
    EXPECT_EQ(dialog.details.lStructSize, 152U);
    EXPECT_EQ(dialog.details.hwndOwner, main.window());
    EXPECT_EQ(dialog.details.hInstance, nullptr);
    EXPECT_EQ(dialog.details.lpstrCustomFilter, nullptr);
    EXPECT_EQ(dialog.details.nFilterIndex, 0U);
    EXPECT_EQ(dialog.details.nMaxFile, 260U);
    EXPECT_EQ(dialog.details.lpstrFileTitle, nullptr);
    EXPECT_EQ(dialog.details.lpstrInitialDir, nullptr);
    EXPECT_EQ(dialog.details.Flags, 0x185004U);
    EXPECT_EQ(dialog.title, "File selection...");
    EXPECT_EQ(dialog.initial_file, "C:\\agent\\agent.log");
    EXPECT_EQ(dialog.filter, "*.log");
}

TEST_F(FileDialog, OffersEveryFileWithoutAnExtension) { EXPECT_EQ(shown("", "").filter, "*.*"); }

TEST_F(FileDialog, OffersNoFilterThatDoesNotFit) {
    EXPECT_EQ(shown(std::string(256, 'x'), "").filter, "*." + std::string(256, 'x'));
    EXPECT_EQ(shown(std::string(257, 'x'), "").filter, "");
}

TEST_F(FileDialog, IsNotOpenedAgainWhenItIsCancelled) {
    shown("log", "C:\\agent.log");
    EXPECT_EQ(shown_file_dialogs().size(), 1U);
}

TEST_F(FileDialog, OpensWithTheFirst259Characters) {
    EXPECT_EQ(shown("log", std::string(2000, 'x')).initial_file, std::string(259, 'x'));
}

TEST_F(FileDialog, LeavesTheProgramInItsFolder) {
    substitute::choose_next_file("E:\\stick\\agent.log");
    shown("log", "");
    EXPECT_EQ(file->value(), "E:\\stick\\agent.log");
    EXPECT_EQ(substitute::current_folder(), L"C:\\start");
}

TEST_F(FileDialog, ThatFailsChangesNothing) {
    substitute::choose_next_file("C:\\never.log");
    substitute::fail_call("GetOpenFileNameA");
    file = std::make_unique<FileSelector>(binding(), title_and_help, "log");
    open(*file, "typed");
    click(main.control(2));
    EXPECT_EQ(text_of(main.control(1)), "typed");
    EXPECT_EQ(file->value(), "");
    EXPECT_EQ(substitute::call_count("GetOpenFileNameA"), 1);
}

/// If the box contains an invalid file name, the dialog refuses to open with it.
class RejectedName : public FileDialog {
protected:
    void press_browse(const std::string& typed) {
        file = std::make_unique<FileSelector>(binding(), title_and_help, "log");
        open(*file, typed);
        click(main.control(2));
    }
};

TEST_F(RejectedName, OpensTheDialogOnceMoreWithoutAName) {
    substitute::choose_next_file("C:\\agent.log");
    press_browse("<C:\\logs>");
    ASSERT_EQ(shown_file_dialogs().size(), 2U);
    EXPECT_EQ(shown_file_dialogs()[0].initial_file, "<C:\\logs>");
    EXPECT_EQ(shown_file_dialogs()[1].initial_file, "");
    EXPECT_EQ(shown_file_dialogs()[1].filter, "*.log");
    EXPECT_EQ(shown_file_dialogs()[1].details.Flags, 0x185004U);
    EXPECT_EQ(file->value(), "C:\\agent.log");
    EXPECT_EQ(text_of(main.control(1)), "C:\\agent.log");
}

TEST_F(RejectedName, StaysWhenTheSecondDialogIsCancelled) {
    press_browse("\"C:\\agent.log\"");
    EXPECT_EQ(shown_file_dialogs().size(), 2U);
    EXPECT_EQ(text_of(main.control(1)), "\"C:\\agent.log\"");
    EXPECT_EQ(file->value(), "");
}

TEST_F(RejectedName, StaysWhenTheSecondDialogFails) {
    substitute::fail_call("GetOpenFileNameA", 2, FNERR_INVALIDFILENAME);
    press_browse("a|b");
    EXPECT_EQ(substitute::call_count("GetOpenFileNameA"), 2);
    EXPECT_EQ(text_of(main.control(1)), "a|b");
}

} // namespace
