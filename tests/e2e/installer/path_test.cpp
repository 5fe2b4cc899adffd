// The machine's PATH after the setup: the folder once, and nothing else changed.
#include "e2e/agent.h"
#include "e2e/installer/setup.h"

#include <gmock/gmock.h>

namespace e2e {
namespace {

constexpr char system_path[] = "%SystemRoot%\\system32;C:\\Own Tools\\;;C:\\windows";

class SetupsPath : public testing::Test {
protected:
    void SetUp() override { set_machine_path(system_path); }
    void TearDown() override {
        if (!read_value(entry_key, "QuietUninstallString").empty())
            remove_all();
        EXPECT_EQ(traces(), before_);
        set_machine_path(original_);
    }
    void set_path_before(const std::string& path) {
        set_machine_path(path);
        before_ = traces();
    }
    static std::string with_folder() { return std::string(system_path) + ";" + folder().string(); }

private:
    const std::string original_ = machine_path();
    std::vector<std::string> before_ = [] {
        set_machine_path(system_path);
        return traces();
    }();
};

TEST_F(SetupsPath, HasTheFolderOnceAndNotAfterRemoval) {
    for (const auto& setup : {older(), newer(), newer()}) {
        ASSERT_EQ(run_to_end(setup + " /S"), 0U);
        EXPECT_EQ(machine_path(), with_folder());
    }
    remove_all();
    EXPECT_EQ(machine_path(), system_path);
}

TEST_F(SetupsPath, StaysAsItIsWhenTheSetupIsToldSo) {
    ASSERT_EQ(run_to_end(older() + " /S /NOPATH"), 0U);
    EXPECT_EQ(machine_path(), system_path);
    ASSERT_EQ(run_to_end(newer() + " /S"), 0U);
    EXPECT_EQ(machine_path(), system_path) << "an upgrade remembers it";
}

TEST_F(SetupsPath, LosesTheFolderWhenAnUpgradeIsToldSo) {
    ASSERT_EQ(run_to_end(older() + " /S"), 0U);
    EXPECT_EQ(machine_path(), with_folder());
    ASSERT_EQ(run_to_end(newer() + " /S /NOPATH"), 0U);
    EXPECT_EQ(machine_path(), system_path);
}

TEST_F(SetupsPath, FollowsTheProgramToAnotherFolder) {
    const std::string elsewhere = folder().string() + " 2";
    ASSERT_EQ(run_to_end(newer() + " /S"), 0U);
    ASSERT_EQ(run_to_end(newer() + " /S /D=" + elsewhere), 0U);
    EXPECT_EQ(machine_path(), std::string(system_path) + ";" + elsewhere);
    remove_all();
    EXPECT_EQ(machine_path(), system_path);
    std::filesystem::remove_all(folder());
}

TEST_F(SetupsPath, KeepsAFolderThatSomebodyElsePutThere) {
    const std::string home = folder().string();
    for (const std::string& entry :
         {home, home + "\\", std::string("c:\\PROGRAM FILES\\tavrin configuration")}) {
        set_path_before(entry + ";" + system_path);
        ASSERT_EQ(run_to_end(newer() + " /S"), 0U);
        EXPECT_EQ(machine_path(), entry + ";" + system_path);
        remove_all();
        EXPECT_EQ(machine_path(), entry + ";" + system_path);
    }
}

TEST_F(SetupsPath, IsNotCutWhenItIsLong) {
    const std::size_t added = folder().string().size() + 1;
    for (const std::size_t length : {2000U, 1100U, 1024U, 1023U, 1022U}) {
        set_path_before(std::string(system_path) + ";" + std::string(length - sizeof system_path, 'x'));
        ASSERT_EQ(run_to_end(newer() + " /S"), 0U);
        EXPECT_EQ(machine_path().size(), length);
        remove_all();
        EXPECT_EQ(machine_path().size(), length);
    }
    // The longest PATH to which the folder can still be added.
    const std::string longest =
        std::string(system_path) + ";" + std::string(1022 - added - sizeof system_path, 'x');
    set_path_before(longest);
    ASSERT_EQ(run_to_end(newer() + " /S"), 0U);
    EXPECT_EQ(machine_path(), longest + ";" + folder().string());
    remove_all();
    EXPECT_EQ(machine_path(), longest);
}

} // namespace
} // namespace e2e
