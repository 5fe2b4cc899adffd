// The package for Windows Installer, installed unattended, as by Group Policy.
#include "e2e/agent.h"
#include "e2e/installer/setup.h"

#include <gmock/gmock.h>

namespace e2e {
namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

// "/f" alone is for products that were installed from elsewhere, says Wine.
std::string repair_newer() { return newer_msi("/i") + " REINSTALL=ALL REINSTALLMODE=omus"; }
std::string install_older() { return older_msi("/i"); }
std::string install_newer() { return newer_msi("/i"); }
std::string remove_older() { return older_msi("/x"); }
std::string remove_newer() { return newer_msi("/x"); }

std::uintmax_t program_size() { return std::filesystem::file_size(folder() / "tavrinconfig.exe"); }

constexpr char path_before[] = "C:\\windows\\system32";

/// Wine removes the folder from the PATH but leaves the semicolon before it, and an upgrade leaves another
/// one, so each test has a PATH of its own.
class WindowsInstaller : public testing::Test {
protected:
    void TearDown() override {
        run_to_end(remove_newer());
        run_to_end(remove_older());
        EXPECT_EQ(traces_left(), before_);
        set_machine_path(original_path_);
    }
    /// What exists after a removal; the PATH without these semicolons.
    static std::vector<std::string> traces_left() {
        const std::string path = machine_path();
        if (path.substr(0, path.find_last_not_of(';') + 1) == path_before)
            set_machine_path(path_before);
        return traces();
    }

private:
    const std::string original_path_ = machine_path();

protected:
    const std::vector<std::string> before_ = [] {
        set_machine_path(path_before);
        return traces();
    }();
};

TEST_F(WindowsInstaller, InstallsAndRemovesWithoutATrace) {
    ASSERT_EQ(run_to_end(install_newer()), 0U);
    const std::string home = folder().string();
    EXPECT_THAT(traces(),
                IsSupersetOf({home + "\\tavrinconfig.exe", home + "\\guide.html", home + "\\tavrinctl.exe",
                              home + "\\tavrin.dsc.resource.json", home + "\\LICENSE.txt",
                              home + "\\LICENSE-runtime.txt", home + "\\examples\\agent.spec",
                              home + "\\examples\\fleet\\agent.json"}));
    EXPECT_EQ(app_path(), home + "\\tavrinconfig.exe");
    EXPECT_EQ(run_to_end(remove_newer()), 0U);
    EXPECT_EQ(traces_left(), before_);
}

TEST_F(WindowsInstaller, ReplacesAnOlderVersion) {
    ASSERT_EQ(run_to_end(install_older()), 0U);
    const auto old_size = program_size();
    ASSERT_EQ(run_to_end(install_newer()), 0U);
    EXPECT_NE(program_size(), old_size);
    EXPECT_EQ(run_to_end(remove_newer()), 0U);
    EXPECT_EQ(traces_left(), before_);
}

TEST_F(WindowsInstaller, DoesNotReplaceANewerVersion) {
    ASSERT_EQ(run_to_end(install_newer()), 0U);
    const auto size = program_size();
    const auto installed = traces();
    EXPECT_NE(run_to_end(install_older()), 0U);
    EXPECT_EQ(program_size(), size);
    EXPECT_EQ(traces(), installed);
}

TEST_F(WindowsInstaller, PutsTheFolderOnThePathOnce) {
    const std::string path = std::string(path_before) + ";" + folder().string() + "\\";
    ASSERT_EQ(run_to_end(install_newer()), 0U);
    EXPECT_EQ(machine_path(), path);
    ASSERT_EQ(run_to_end(repair_newer()), 0U);
    EXPECT_EQ(machine_path(), path);
}

TEST_F(WindowsInstaller, HasTheFolderOnThePathOnceAfterAnUpgrade) {
    ASSERT_EQ(run_to_end(install_older()), 0U);
    ASSERT_EQ(run_to_end(install_newer()), 0U);
    EXPECT_THAT(machine_path(), AnyOf(std::string(path_before) + ";" + folder().string() + "\\",
                                      std::string(path_before) + ";;" + folder().string() + "\\"));
    ASSERT_EQ(run_to_end(remove_newer()), 0U);
    EXPECT_THAT(machine_path(), Not(HasSubstr("Tavrin")));
}

TEST_F(WindowsInstaller, LeavesThePathAloneWithoutItsFeature) {
    ASSERT_EQ(run_to_end(install_newer() + " ADDLOCAL=Program"), 0U);
    EXPECT_EQ(machine_path(), path_before);
}

TEST_F(WindowsInstaller, RepairsWhatIsMissing) {
    ASSERT_EQ(run_to_end(install_newer()), 0U);
    const auto installed = traces();
    ASSERT_TRUE(std::filesystem::remove(folder() / "tavrinctl.exe"));
    ASSERT_TRUE(std::filesystem::remove(folder() / "guide.html"));
    ASSERT_EQ(run_to_end(repair_newer()), 0U);
    EXPECT_EQ(traces(), installed);
}

TEST_F(WindowsInstaller, RefusesBesideTheSetup) {
    ASSERT_EQ(run_to_end(older() + " /S"), 0U);
    const auto installed = traces();
    EXPECT_EQ(run_to_end(install_newer()), DWORD{ERROR_INSTALL_FAILURE});
    EXPECT_EQ(traces(), installed);
    remove_all();
}

TEST_F(WindowsInstaller, KeepsTheSetupFromInstallingBesideIt) {
    ASSERT_EQ(run_to_end(install_newer()), 0U);
    const auto installed = traces();
    EXPECT_EQ(run_to_end(older() + " /S"), msi_is_installed);
    EXPECT_EQ(run_to_end(newer() + " /S"), msi_is_installed);
    EXPECT_EQ(traces(), installed);
}

TEST_F(WindowsInstaller, LeavesTheAgentsSettingsAlone) {
    write_value(sample_key, "Text", "own text");
    const auto with_setting = traces();
    ASSERT_EQ(run_to_end(install_newer()), 0U);
    ASSERT_EQ(run_to_end(remove_newer()), 0U);
    EXPECT_EQ(traces_left(), with_setting);
    EXPECT_EQ(read_value(sample_key, "Text"), "own text");
    delete_key("SOFTWARE\\Tavrin");
}

} // namespace
} // namespace e2e
