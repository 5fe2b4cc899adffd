// The rights of a folder that the setup creates. Wine's icacls does nothing, so a program that records its
// arguments replaces it; the effect of the real one can be seen only on Windows.
#include "e2e/agent.h"
#include "e2e/installer/setup.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

namespace e2e {
namespace {

constexpr char overrides[] = "Software\\Wine\\DllOverrides";
constexpr char chosen[] = "C:\\Chosen Folder";

class SetupsFolder : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::copy_file(program_folder() + "\\tests\\icacls.exe", tool_,
                                   std::filesystem::copy_options::overwrite_existing);
        answer(0);
        // Otherwise Wine would run its own icacls.
        RegSetKeyValueA(HKEY_CURRENT_USER, overrides, "icacls.exe", REG_SZ, "native", sizeof "native");
    }
    void TearDown() override {
        RegDeleteKeyValueA(HKEY_CURRENT_USER, overrides, "icacls.exe");
        if (!read_value(entry_key, "QuietUninstallString").empty())
            remove_all();
        std::filesystem::remove_all(chosen);
        std::filesystem::remove(asked_);
        std::filesystem::remove(answer_);
    }
    void answer(int code) const { std::ofstream(answer_) << code; }
    /// What icacls was asked for, without the program's name.
    std::string asked() const {
        std::ifstream file(asked_);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static std::string install_there() { return newer() + " /S /D=" + chosen; }

private:
    const std::string system_ = environment("SystemRoot") + "\\system32\\";
    const std::string tool_ = system_ + "icacls.exe";
    const std::string asked_ = system_ + "icacls-asked.txt";
    const std::string answer_ = system_ + "icacls-answer.txt";
};

TEST_F(SetupsFolder, IsNotForUsersToWriteTo) {
    ASSERT_EQ(run_to_end(install_there()), 0U);
    EXPECT_EQ(asked(), "\"C:\\Chosen Folder\" /inheritance:r /grant:r *S-1-5-18:(OI)(CI)F "
                       "*S-1-5-32-544:(OI)(CI)F *S-1-5-32-545:(OI)(CI)RX");
    EXPECT_TRUE(std::filesystem::exists(std::string(chosen) + "\\tavrinctl.exe"));
}

TEST_F(SetupsFolder, KeepsItsRightsWhenItWasThere) {
    std::filesystem::create_directory(chosen);
    ASSERT_EQ(run_to_end(install_there()), 0U);
    EXPECT_EQ(asked(), "");
}

TEST_F(SetupsFolder, NeedsNoneBelowTheProgramsFolder) {
    ASSERT_EQ(run_to_end(newer() + " /S"), 0U);
    EXPECT_EQ(asked(), "");
}

TEST_F(SetupsFolder, StaysEmptyWhenItsRightsCannotBeSet) {
    answer(5);
    EXPECT_EQ(run_to_end(install_there()), failed);
    EXPECT_FALSE(std::filesystem::exists(chosen));
    EXPECT_EQ(read_value(entry_key, "DisplayVersion"), "");
}

} // namespace
} // namespace e2e
