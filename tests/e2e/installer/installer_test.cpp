// The packed program is installed, started, upgraded and removed as on a user's machine. Run by
// tests/e2e/install, in a Wine prefix of its own.
#include "e2e/agent.h"
#include "e2e/installer/setup.h"
#include "e2e/tool.h"
#include "e2e/wait.h"
#include "e2e/window.h"

#include <gmock/gmock.h>

#include <fstream>
#include <memory>

namespace e2e {
namespace {

using testing::IsSupersetOf;

const TreePath sample_number = {"Tavrin Sample", "Look around", "A number"};

/// A machine without the program and without a configuration.
class Installer : public testing::Test {
protected:
    void SetUp() override { clean(); }
    void TearDown() override { clean(); }

    static void clean() {
        if (!read_value(entry_key, "QuietUninstallString").empty())
            remove_all();
        // The uninstaller's copy may still be about to end in it.
        wait_for("the end of the folder", [] {
            std::error_code in_use;
            std::filesystem::remove_all(folder(), in_use);
            return !std::filesystem::exists(folder());
        });
        delete_key("SOFTWARE\\Tavrin");
    }
    static std::string sample_file() { return (folder() / "sample\\sample.spec").string(); }
    static std::string version() { return read_value(entry_key, "DisplayVersion"); }
};

/// A program that is running during an installation or a removal.
class WhileOpen : public Installer {
protected:
    void SetUp() override {
        Installer::SetUp();
        ASSERT_EQ(run_to_end(older() + " /S /SAMPLE"), 0U);
        before_ = traces();
        tool_ = std::make_unique<Tool>(installed_program());
        tool_->select(sample_number);
    }
    void TearDown() override {
        tool_.reset();
        Installer::TearDown();
    }
    void close_tool() {
        tool_->press(close_id);
        ASSERT_EQ(tool_->exit_code(), 0U);
    }
    void expect_nothing_changed() const {
        EXPECT_EQ(version(), "0.0.9");
        EXPECT_EQ(traces(), before_);
        EXPECT_TRUE(tool_->running());
    }

private:
    std::vector<std::string> before_;
    std::unique_ptr<Tool> tool_;
};

TEST_F(Installer, InstallsProgramGuideLinksAndEntry) {
    ASSERT_EQ(run_to_end(newer() + " /S"), 0U);
    const std::string home = folder().string();
    EXPECT_THAT(traces(),
                IsSupersetOf({home + "\\tavrinconfig.exe", home + "\\LICENSE.txt",
                              home + "\\LICENSE-runtime.txt", home + "\\guide.html", home + "\\tavrinctl.exe",
                              home + "\\tavrin.dsc.resource.json", home + "\\uninstall.exe",
                              home + "\\examples\\agent.spec", home + "\\examples\\fleet\\agent.json"}));
    EXPECT_EQ(app_path(), home + "\\tavrinconfig.exe");
    EXPECT_EQ(target_of(start_menu_link("Tavrin Configuration")), home + "\\tavrinconfig.exe");
    EXPECT_EQ(target_of(start_menu_link("Tavrin Configuration Guide")), home + "\\guide.html");
    EXPECT_EQ(read_value(entry_key, "DisplayName"), "Tavrin Configuration");
    EXPECT_EQ(version(), environment("TAVRIN_VERSION"));
    EXPECT_EQ(read_value(entry_key, "Publisher"), "The tavrinconfig authors");
    EXPECT_EQ(read_value(entry_key, "DisplayIcon"), home + "\\tavrinconfig.exe");
    EXPECT_EQ(read_value(entry_key, "InstallLocation"), home);
    EXPECT_EQ(read_value(entry_key, "UninstallString"), "\"" + home + "\\uninstall.exe\"");
    EXPECT_GT(entry_number("EstimatedSize"), 300U);
    EXPECT_LT(entry_number("EstimatedSize"), 3000U);
    EXPECT_EQ(entry_number("NoModify") + entry_number("NoRepair"), 2U);
    // Kept for checks of its signature.
    std::filesystem::copy_file(folder() / "uninstall.exe", environment("TAVRIN_KEEP"),
                               std::filesystem::copy_options::overwrite_existing);
}

TEST_F(Installer, RegistersNothingUnlessAsked) {
    ASSERT_EQ(run_to_end(newer() + " /S"), 0U);
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Tavrin", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(std::filesystem::exists(sample_file()));
}

TEST_F(Installer, RegistersTheSampleAndTheProgramOpensIt) {
    ASSERT_EQ(run_to_end(newer() + " /S /SAMPLE"), 0U);
    EXPECT_EQ(read_value(list_key, sample_name), sample_file());
    Tool tool(installed_program());
    tool.select(sample_number);
    EXPECT_EQ(text_of(tool.page("A number").controls[0]), "42");
    tool.press(close_id);
    EXPECT_EQ(tool.exit_code(), 0U);
}

TEST_F(Installer, LeavesWhatSomebodyElseRegistered) {
    write_value(list_key, "Agent", "C:\\agent.spec");
    write_value(list_key, sample_name, "C:\\own.spec");
    write_value(sample_key, "Text", "own text");
    const std::vector<std::string> before = traces();
    ASSERT_EQ(run_to_end(newer() + " /S /SAMPLE"), 0U);
    remove_all();
    EXPECT_EQ(traces(), before);
    EXPECT_EQ(read_value(list_key, "Agent"), "C:\\agent.spec");
    EXPECT_EQ(read_value(list_key, sample_name), "C:\\own.spec");
    EXPECT_EQ(read_value(sample_key, "Text"), "own text");
}

TEST_F(Installer, RemovesItselfWithoutATrace) {
    const std::vector<std::string> before = traces();
    ASSERT_EQ(run_to_end(newer() + " /S /SAMPLE"), 0U);
    ASSERT_NE(traces(), before);
    remove_all();
    EXPECT_EQ(traces(), before);
}

TEST_F(Installer, LeavesFilesOfThePersonsOwn) {
    std::filesystem::create_directories(folder() / "guides");
    std::ofstream(folder() / "guides\\older.md") << "mine";
    ASSERT_EQ(run_to_end(newer() + " /S"), 0U);
    std::ofstream(folder() / "mine.txt") << "mine";
    remove_all();
    std::vector<std::string> left;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder()))
        left.push_back(std::filesystem::relative(entry.path(), folder()).string());
    EXPECT_THAT(left, testing::UnorderedElementsAre("mine.txt", "guides", "guides\\older.md"));
}

/// A file that another program has open, so it can be neither written nor deleted.
class Locked {
public:
    explicit Locked(const std::filesystem::path& path)
        : file_(CreateFileA(path.string().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0,
                            nullptr)) {}
    ~Locked() { CloseHandle(file_); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
    bool holds() const { return file_ != INVALID_HANDLE_VALUE; }

private:
    HANDLE file_;
};

TEST_F(Installer, FailsWhenAFileCannotBeReplaced) {
    ASSERT_EQ(run_to_end(older() + " /S"), 0U);
    {
        const Locked guide(folder() / "guide.html");
        ASSERT_TRUE(guide.holds());
        EXPECT_EQ(run_to_end(newer() + " /S"), failed);
        EXPECT_EQ(version(), "0.0.9");
    }
    EXPECT_EQ(run_to_end(newer() + " /S"), 0U);
    EXPECT_EQ(version(), environment("TAVRIN_VERSION"));
}

TEST_F(Installer, DeletesWhatOnlyTheOlderVersionHad) {
    ASSERT_EQ(run_to_end(older() + " /S"), 0U);
    for (const char* name : {"guides\\old.md", "old\\pictures\\old.png"}) {
        std::filesystem::create_directories((folder() / name).parent_path());
        std::ofstream(folder() / name) << "what the newer version no longer has";
        write_value(installed_key, name, "0.0.9");
    }
    ASSERT_EQ(run_to_end(newer() + " /S"), 0U);
    EXPECT_FALSE(std::filesystem::exists(folder() / "guides\\old.md"));
    EXPECT_FALSE(std::filesystem::exists(folder() / "old"));
    EXPECT_TRUE(std::filesystem::exists(folder() / "guide.html"));
    EXPECT_EQ(read_value(installed_key, "guides\\old.md"), "");
    EXPECT_EQ(read_value(installed_key, "guide.html"), environment("TAVRIN_VERSION"));
}

TEST_F(Installer, UpgradesInTheFolderThatWasChosen) {
    const std::filesystem::path chosen = environment("ProgramFiles") + "\\Chosen";
    ASSERT_EQ(run_to_end(older() + " /S /SAMPLE /D=" + chosen.string()), 0U);
    write_value(sample_key, "Number", "43");
    std::ofstream(chosen / "mine.txt") << "mine";
    const auto old_size = std::filesystem::file_size(chosen / "tavrinconfig.exe");
    ASSERT_EQ(run_to_end(newer() + " /S"), 0U);
    EXPECT_EQ(version(), environment("TAVRIN_VERSION"));
    EXPECT_NE(std::filesystem::file_size(chosen / "tavrinconfig.exe"), old_size);
    EXPECT_TRUE(std::filesystem::remove(chosen / "mine.txt"));
    EXPECT_FALSE(std::filesystem::exists(folder()));
    EXPECT_EQ(read_value(sample_key, "Number"), "43");
    EXPECT_EQ(read_value(list_key, sample_name), (chosen / "sample\\sample.spec").string());
    run_to_end(read_value(entry_key, "QuietUninstallString"));
    wait_for(
        "the end of the removal", [&] { return !std::filesystem::exists(chosen); }, 120);
}

TEST_F(WhileOpen, SilentUpgradeAndRemovalChangeNothing) {
    EXPECT_EQ(run_to_end(newer() + " /S"), program_runs);
    expect_nothing_changed();
    EXPECT_EQ(run_to_end(uninstaller_in_place()), program_runs);
    expect_nothing_changed();
    close_tool();
    EXPECT_EQ(run_to_end(newer() + " /S"), 0U);
    EXPECT_EQ(version(), environment("TAVRIN_VERSION"));
}

TEST_F(WhileOpen, UpgradeSaysSoAndCanBeCancelled) {
    Dialog installer(newer());
    installer.press("&Next >");
    installer.press("&Install");
    EXPECT_EQ(installer.box_text(),
              "Tavrin Configuration is open, maybe in another person's session, and cannot be replaced "
              "meanwhile.\r\n\r\nClose it and press Retry, or press Cancel to leave everything as it is.");
    installer.answer(IDCANCEL);
    EXPECT_EQ(installer.exit_code(), program_runs);
    expect_nothing_changed();
}

TEST_F(WhileOpen, UpgradeGoesOnAfterTheProgramIsClosed) {
    Dialog installer(newer());
    installer.press("&Next >");
    installer.press("&Install");
    installer.box_text();
    installer.answer(IDRETRY);
    installer.box_text(); // still open
    close_tool();
    installer.answer(IDRETRY);
    installer.press("&Close");
    EXPECT_EQ(installer.exit_code(), 0U);
    EXPECT_EQ(version(), environment("TAVRIN_VERSION"));
}

/// A tavrinctl that waits for the end of its standard input.
class WaitingCommandLine {
public:
    WaitingCommandLine() {
        SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
        CreatePipe(&read_, &write_, &inherited, 0);
        SetHandleInformation(write_, HANDLE_FLAG_INHERIT, 0);
        SetStdHandle(STD_INPUT_HANDLE, read_);
        const std::string command_line = "\"" + (folder() / "tavrinctl.exe").string() + "\" apply -";
        process_ = std::make_unique<Process>(command_line);
        SetStdHandle(STD_INPUT_HANDLE, before_);
    }
    ~WaitingCommandLine() {
        CloseHandle(read_);
        CloseHandle(write_);
    }
    WaitingCommandLine(const WaitingCommandLine&) = delete;
    WaitingCommandLine& operator=(const WaitingCommandLine&) = delete;
    Process& process() { return *process_; }

private:
    const HANDLE before_ = GetStdHandle(STD_INPUT_HANDLE);
    HANDLE read_ = nullptr;
    HANDLE write_ = nullptr;
    std::unique_ptr<Process> process_;
};

TEST_F(Installer, ChangesNothingWhileTheCommandLineRuns) {
    ASSERT_EQ(run_to_end(older() + " /S"), 0U);
    const auto before = traces();
    {
        WaitingCommandLine command_line;
        EXPECT_EQ(run_to_end(newer() + " /S"), program_runs);
        EXPECT_EQ(run_to_end(uninstaller_in_place()), program_runs);
        EXPECT_TRUE(command_line.process().running());
        EXPECT_EQ(traces(), before);
        EXPECT_EQ(version(), "0.0.9");
    }
    EXPECT_EQ(run_to_end(newer() + " /S"), 0U);
    EXPECT_EQ(version(), environment("TAVRIN_VERSION"));
}

TEST_F(Installer, SaysThatTheCommandLineRuns) {
    ASSERT_EQ(run_to_end(older() + " /S"), 0U);
    WaitingCommandLine command_line;
    Dialog installer(newer());
    installer.press("&Next >");
    installer.press("&Install");
    EXPECT_EQ(
        installer.box_text(),
        "The command line, tavrinctl, is running, maybe in another person's session, and cannot be replaced "
        "meanwhile.\r\n\r\nClose it and press Retry, or press Cancel to leave everything as it is.");
    installer.answer(IDCANCEL);
    EXPECT_EQ(installer.exit_code(), program_runs);
}

} // namespace
} // namespace e2e
