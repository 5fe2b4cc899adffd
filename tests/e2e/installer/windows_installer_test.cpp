// The package for Windows Installer, as Group Policy and the like install it: nobody is asked anything.
#include "e2e/agent.h"
#include "e2e/installer/setup.h"

#include <gmock/gmock.h>

namespace e2e {
namespace {

using testing::IsSupersetOf;

std::string msi(const char* order, const char* package) {
    return std::string("msiexec ") + order + " \"" + environment(package) + "\" /qn";
}
std::string install_older() { return msi("/i", "TAVRIN_OLDER_MSI"); }
std::string install_newer() { return msi("/i", "TAVRIN_NEWER_MSI"); }
std::string remove_older() { return msi("/x", "TAVRIN_OLDER_MSI"); }
std::string remove_newer() { return msi("/x", "TAVRIN_NEWER_MSI"); }

std::uintmax_t program_size() { return std::filesystem::file_size(folder() / "tavrinconfig.exe"); }

class WindowsInstaller : public testing::Test {
protected:
    void TearDown() override {
        run_to_end(remove_newer());
        run_to_end(remove_older());
        EXPECT_EQ(traces(), before_);
    }

    const std::vector<std::string> before_ = traces();
};

TEST_F(WindowsInstaller, InstallsAndRemovesWithoutATrace) {
    ASSERT_EQ(run_to_end(install_newer()), 0U);
    const std::string home = folder().string();
    EXPECT_THAT(traces(), IsSupersetOf({home + "\\tavrinconfig.exe", home + "\\guide.html",
                                        home + "\\tavrinctl.exe", home + "\\tavrin.dsc.resource.json",
                                        home + "\\LICENSE.txt", home + "\\LICENSE-runtime.txt"}));
    EXPECT_EQ(run_to_end(remove_newer()), 0U);
    EXPECT_EQ(traces(), before_);
}

TEST_F(WindowsInstaller, ReplacesAnOlderVersion) {
    ASSERT_EQ(run_to_end(install_older()), 0U);
    const auto old_size = program_size();
    ASSERT_EQ(run_to_end(install_newer()), 0U);
    EXPECT_NE(program_size(), old_size);
    EXPECT_EQ(run_to_end(remove_newer()), 0U);
    EXPECT_EQ(traces(), before_);
}

TEST_F(WindowsInstaller, DoesNotReplaceANewerVersion) {
    ASSERT_EQ(run_to_end(install_newer()), 0U);
    const auto size = program_size();
    const auto installed = traces();
    EXPECT_NE(run_to_end(install_older()), 0U);
    EXPECT_EQ(program_size(), size);
    EXPECT_EQ(traces(), installed);
}

TEST_F(WindowsInstaller, LeavesTheAgentsSettingsAlone) {
    write_value(sample_key, "Text", "own text");
    const auto with_setting = traces();
    ASSERT_EQ(run_to_end(install_newer()), 0U);
    ASSERT_EQ(run_to_end(remove_newer()), 0U);
    EXPECT_EQ(traces(), with_setting);
    EXPECT_EQ(read_value(sample_key, "Text"), "own text");
    delete_key("SOFTWARE\\Tavrin");
}

} // namespace
} // namespace e2e
