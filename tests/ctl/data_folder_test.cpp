// The folder for what one run leaves for the next, and the lock in it.
#include "ctl/failure.h"
#include "ctl/io/system.h"
#include "ctl/program_run.h"
#include "substitute/control.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace {

using testing::HasSubstr;
namespace fs = std::filesystem;

class DataFolder : public Program {
protected:
    /// With its backup where backups go by default.
    Ended set_port() { return run({"set", "Agent", "Port=5001", "--timeout", "2"}); }
    void expect_refused(const Ended& done, const std::string& words) {
        EXPECT_EQ(done.code, ctl::ExitCode::failed);
        EXPECT_THAT(done.err, HasSubstr(words));
        EXPECT_EQ(text("Port"), "5000");
        EXPECT_EQ(substitute::service_counts("AgentService").stops, 0);
    }

    const fs::path data = scratch.path_of("data");
};

TEST_F(DataFolder, IsForItsOwnerAlone) {
    EXPECT_EQ(set_port().code, ctl::ExitCode::success);
    EXPECT_EQ(fs::status(data).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(data / "Backup").permissions(), fs::perms::owner_all);
}

TEST_F(DataFolder, IsClosedToOthersWhenItWasOpen) {
    fs::create_directories(data / "Backup");
    fs::permissions(data, fs::perms::all);
    EXPECT_EQ(set_port().code, ctl::ExitCode::success);
    EXPECT_EQ(fs::status(data).permissions(), fs::perms::owner_all);
}

TEST_F(DataFolder, IsNoLink) {
    const fs::path elsewhere = scratch.path_of("elsewhere");
    fs::create_directories(elsewhere);
    fs::create_directory_symlink(elsewhere, data);
    expect_refused(set_port(), data.string() + " is a link or a file; remove it and run tavrinctl again\n");
    EXPECT_TRUE(fs::is_empty(elsewhere));
    fs::remove(data);
    fs::create_directory(data);
    fs::create_directory_symlink(elsewhere, data / "Backup");
    expect_refused(set_port(), "Backup is a link or a file; remove it and run tavrinctl again\n");
    EXPECT_TRUE(fs::is_empty(elsewhere));
}

TEST_F(DataFolder, BelongsToNobodyElse) {
    fs::create_directory(data);
    if (chown(data.c_str(), 12345, 12345) != 0)
        GTEST_SKIP() << "only root can give a folder away";
    expect_refused(set_port(), data.string() +
                                   " belongs to 12345, not to the administrators; look at what is in "
                                   "it, remove it and run tavrinctl again\n");
}

TEST_F(DataFolder, HoldsTheLock) {
    fs::create_directory(data);
    void* const held = ctl::hold_file((data / "lock").string());
    const std::uint64_t start = substitute::clock_now();
    expect_refused(set_port(), "tavrinctl: timed out waiting for another tavrinctl; nothing was written\n");
    EXPECT_EQ(substitute::clock_now() - start, 2'000u);
    EXPECT_EQ(run({"set", "Agent", "Port=5001", "--what-if"}).code, ctl::ExitCode::success);
    EXPECT_EQ(run({"show", "Agent"}).code, ctl::ExitCode::success);
    ctl::release_file(held);
    EXPECT_EQ(set_port().code, ctl::ExitCode::success);
}

TEST_F(DataFolder, IsNotMadeByWhatOnlyLooks) {
    EXPECT_EQ(run({"set", "Agent", "Port=5001", "--what-if"}).code, ctl::ExitCode::success);
    EXPECT_EQ(run({"show", "Agent"}).code, ctl::ExitCode::success);
    EXPECT_FALSE(fs::exists(data));
}

TEST_F(DataFolder, CannotBeUsedWhileItsLockIsNoFile) {
    fs::create_directories(data / "lock");
    expect_refused(set_port(), "tavrinctl: cannot open " + (data / "lock").string() + ": Is a directory\n");
}

} // namespace
