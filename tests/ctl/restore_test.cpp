// What set and apply saved comes back, and how many of their backups stay.
#include "ctl/change/backup.h"
#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/program_run.h"
#include "substitute/control.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace {

using testing::HasSubstr;
namespace fs = std::filesystem;

class Restore : public Program {
protected:
    Restore() {
        set_value(key, "Port", REG_DWORD, std::string("\x88\x13\0\0", 4));
        set_value(key, "First", REG_BINARY, std::string("\x01\x02\xFF", 3));
        set_value(key, "AgentName", REG_EXPAND_SZ, std::string("%web% \"1\"\\\0", 11));
        set_text(key, "Colour", "red");
    }
    /// With the backup where backups go by default.
    Ended set_all() {
        return run({"set", "Agent", "Port=1", "First=a", "AgentName=b", "Colour=green", "Second=new"});
    }
    std::vector<std::optional<RawValue>> raw_values() const {
        std::vector<std::optional<RawValue>> values;
        for (const char* const name : {"Port", "First", "AgentName", "Colour", "Second"})
            values.push_back(raw_value(key, name));
        return values;
    }
    std::size_t backups() const {
        const fs::directory_iterator all(scratch.path_of("data/Backup"));
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }
    std::string file(const std::string& text) {
        std::string path = scratch.path_of("some.reg");
        std::ofstream(path, std::ios::binary) << "\xFF\xFE" << ctl::to_utf16(text);
        return path;
    }
    void expect_refused(const std::string& path, const std::string& words) {
        const Ended done = run({"restore", path});
        EXPECT_EQ(done.code, ctl::ExitCode::invalid);
        EXPECT_THAT(done.err, HasSubstr(words + "\n"));
    }

    const std::string header = "Windows Registry Editor Version 5.00\r\n";
    const std::string section = "\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Agent]\r\n";
};

TEST_F(Restore, BringsBackEveryTypeAndUndoesItself) {
    const auto before = raw_values();
    ASSERT_EQ(set_all().code, ctl::ExitCode::success);
    const auto changed = raw_values();
    ASSERT_NE(changed, before);
    const Ended done = run({"restore", "--last"});
    EXPECT_EQ(done.code, ctl::ExitCode::success) << done.err;
    EXPECT_EQ(raw_values(), before);
    EXPECT_EQ(substitute::service_counts("AgentService").starts, 2);
    EXPECT_EQ(run({"restore", "--last"}).code, ctl::ExitCode::success);
    EXPECT_EQ(raw_values(), changed);
}

TEST_F(Restore, ShowsWhatWouldChange) {
    set_all();
    const auto changed = raw_values();
    const Ended done = run({"restore", "--last", "--what-if", "--exit-code"});
    EXPECT_EQ(done.code, ctl::ExitCode::drift);
    EXPECT_EQ(done.out, "what-if: nothing is written\nAgent\n"
                        "  AgentName: b -> %web% \"1\"\\ (REG_EXPAND_SZ)\n"
                        "  Port: 1 -> 5000 (REG_DWORD)\n"
                        "  First: a -> hex 0102ff (REG_BINARY)\n"
                        "  Second: new -> (removed)\n"
                        "  Colour: green -> red\n");
    EXPECT_EQ(raw_values(), changed);
}

TEST_F(Restore, HasNothingToDoTwice) {
    set_all();
    const std::string path = fs::directory_iterator(scratch.path_of("data/Backup"))->path().string();
    EXPECT_EQ(run({"restore", path}).code, ctl::ExitCode::success);
    EXPECT_EQ(run({"restore", path}).out, "nothing to do: all values match\n");
}

TEST_F(Restore, NeedsABackup) {
    EXPECT_EQ(run({"restore"}).code, ctl::ExitCode::usage);
    EXPECT_EQ(run({"restore", "--last", "x.reg"}).code, ctl::ExitCode::usage);
    EXPECT_EQ(run({"restore", scratch.path_of("none.reg")}).code, ctl::ExitCode::failed);
    const Ended none = run({"restore", "--last"});
    EXPECT_EQ(none.code, ctl::ExitCode::failed);
    EXPECT_THAT(none.err, HasSubstr("there is no backup in " + scratch.path_of("data") + "/Backup\n"));
}

TEST_F(Restore, TakesNothingElse) {
    const auto before = raw_values();
    expect_refused(scratch.path_of("Agent.spec"), "not a backup of tavrinctl: it is not in UTF-16");
    expect_refused(file("REGEDIT4\r\n"), "line 1 was not written by tavrinctl");
    expect_refused(file(header + "\"Port\"=\"1\"\r\n"), "line 2 was not written by tavrinctl");
    for (const std::string line :
         {"[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Agent]", "[HKEY_CURRENT_USER\\A]", "\"Port\"=1",
          "\"Port\"=dword:", "\"Port\"=dword:123456789", "\"Port=\"1\"", "\"Port\"=\"1\" ", "\"Port\"=hex:1,",
          "\"Port\"=hex(x):00", "; words", "Port=-"})
        expect_refused(file(header + section + line + "\r\n"), "line 4 was not written by tavrinctl");
    expect_refused(file(header + section + "\"Other\"=\"1\"\r\n"),
                   "nothing was written: no configuration has the value \"Other\" of "
                   "HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Agent");
    expect_refused(file(header + "\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Other]\r\n\"Port\"=\"1\"\r\n"),
                   "nothing was written: no configuration has the value \"Port\" of "
                   "HKEY_LOCAL_MACHINE\\SOFTWARE\\Other");
    EXPECT_EQ(raw_values(), before);
}

TEST_F(Restore, KeepsTheNewestBackups) {
    for (int i = 0; i < 12; ++i) {
        ASSERT_EQ(run({"set", "Agent", "Port=" + std::to_string(i), "--restart", "never"}).code,
                  ctl::ExitCode::success);
    }
    EXPECT_EQ(backups(), 12U);
    std::ofstream(scratch.path_of("data/Backup/own.reg")) << "stays";
    EXPECT_EQ(run({"set", "Agent", "Port=100", "--keep", "3", "--restart", "never"}).code,
              ctl::ExitCode::success);
    EXPECT_EQ(backups(), 4U);
    EXPECT_EQ(run({"restore", "--last", "--restart", "never"}).code, ctl::ExitCode::success);
    EXPECT_EQ(text("Port"), "11") << "of several in one second the last is the newest";
    EXPECT_EQ(change({"set", "Agent", "Port=5", "--keep", "1"}).code, ctl::ExitCode::success);
    EXPECT_EQ(backups(), 5U) << "a folder that the caller named, and what was there";
    const Ended none = run({"set", "Agent", "Port=6", "--keep", "0"});
    EXPECT_EQ(none.code, ctl::ExitCode::usage);
    EXPECT_THAT(none.err, HasSubstr(" --keep takes a number from 1 to 100000, not \"0\"\n"));
}

TEST_F(Restore, TakesTheHundredthBackupOfASecondForNewerThanTheTwentieth) {
    ASSERT_EQ(run({"set", "Agent", "Port=1", "--restart", "never"}).code, ctl::ExitCode::success);
    for (const std::string number : {"100", "20"}) {
        fs::copy(file(header + section + "\"Port\"=\"" + number + "\"\r\n"),
                 scratch.path_of("data/Backup/tavrinctl-29991231-235959-" + number + ".reg"));
    }
    EXPECT_EQ(run({"restore", "--last", "--restart", "never"}).code, ctl::ExitCode::success);
    EXPECT_EQ(text("Port"), "100");
}

} // namespace
