// What the program says of itself and of each command, as it is printed.
#include "ctl/program_run.h"

#include <gmock/gmock.h>

namespace {

class Help : public Program {
protected:
    /// The help of a command up to the exit codes, which all of them have.
    std::string help_of(const std::string& verb) {
        const Ended done = run({verb, "--help"});
        EXPECT_EQ(done.code, ctl::ExitCode::success);
        EXPECT_EQ(done.err, "");
        const std::string with_codes = "\n" + exit_codes;
        EXPECT_TRUE(done.out.ends_with(with_codes)) << done.out;
        return done.out.substr(0, done.out.size() - with_codes.size());
    }

    const std::string exit_codes = R"(Exit codes:
  0  success, whether or not anything changed (or would change)
  1  failure: a file, the registry or the network
  2  the command line is wrong
  3  something differs (only with --exit-code)
  4  an invalid value, name, state or spec file; nothing was written
  5  access denied
  6  a server refused, or could not be reached
  7  the values were written, but the service was not restarted
)";
    const std::string how_to_change = R"(  --json
      print JSON, for programs; the default is text, for people
  --verbose
      print progress on the standard error stream even if it is not a terminal
  --what-if
      print what would change and write nothing
  --exit-code
      exit with 3 if something differs, or differed before it was written
  --restart auto|never
      auto (the default): restart a running service around the change; never: leave it alone
  --timeout SECONDS
      seconds for each wait: 1 to 86400, default 60
  --backup FOLDER
      the folder for the previous values; default: Tavrin\Backup in C:\ProgramData
  --keep N
      how many backups to keep in the default folder: 1 to 100000, default 50
)";
};

TEST_F(Help, OfTheProgram) {
    const Ended done = run({"--help"});
    EXPECT_EQ(done.code, ctl::ExitCode::success);
    ASSERT_TRUE(done.out.starts_with("tavrinctl ")) << done.out;
    EXPECT_EQ(done.out.substr(done.out.find(':')),
              R"(: shows, checks and changes the settings of the Tavrin Agent

  check       report mistakes in spec files and state files
  show        print the settings of this machine
  set         change values of one configuration
  apply       set the values that a state file lists
  restore     restore the values that set or apply saved
  test        test the connection to every configured server
  scan        find servers on the local networks
  template    make templates for Group Policy and .reg files from spec files
  diff        compare the reports of many machines with the desired state
  dsc         act as a resource for Desired State Configuration (DSC)
  completion  print a script for shell completion of commands and options

"tavrinctl COMMAND --help" explains a command, its options and their defaults.

)" + exit_codes);
}

TEST_F(Help, OfCheck) {
    EXPECT_EQ(
        help_of("check"),
        R"(usage: tavrinctl check FILE... [--state STATE.json] [--format text|json|sarif|github] [--code-page N]

Checks spec files and prints a line for each mistake, as a compiler does:

    file:line: error|warning: text

An error is something that the window refuses; a warning is something that causes trouble for people who use
the window.
With --state, also reports what apply would refuse in that state on machines with these spec files. The
formats sarif and github are for services that show findings beside the changed lines. The exit code is 4 if
there are errors.

Options:
  --help
      print this help
  --format text|json|sarif|github
      the output format
  --state STATE.json
      the state file to check; for template, the one with the values (default: this machine's values)
  --code-page N
      the code page of the spec files: 1252, 65001 (UTF-8), ...; default: the machine's, 1252 on Linux
)");
}

TEST_F(Help, OfShow) {
    EXPECT_EQ(help_of("show"), R"(usage: tavrinctl show [CONFIG] [--json]

Prints the entries of one configuration, or of all, by group: value name, kind and value. With --json it
prints a state, which apply reads.

Options:
  --help
      print this help
  --json
      print JSON, for programs; the default is text, for people
)");
}

TEST_F(Help, OfSet) {
    EXPECT_EQ(
        help_of("set"),
        R"(usage: tavrinctl set CONFIG NAME=VALUE... [--json] [--verbose] [--what-if] [--exit-code] [--restart auto|never] [--timeout SECONDS] [--backup FOLDER] [--keep N]

NAME is a value name in any letter case, or the title of an entry if no other entry has it. All values are
checked before any is written, and a value that matches is left alone. The previous values are saved to a
.reg file first. If the configuration's service is running, it is stopped before the values are written and
started afterwards; --timeout applies to each of the two waits.

Options:
  --help
      print this help
)" + how_to_change);
}

TEST_F(Help, OfApply) {
    EXPECT_EQ(
        help_of("apply"),
        R"(usage: tavrinctl apply STATE.json [--json] [--verbose] [--what-if] [--exit-code] [--restart auto|never] [--timeout SECONDS] [--backup FOLDER] [--keep N]

Reads a state, in the form of the output of show --json, from a file or, for "-", from the standard input, and
changes the values that differ from it. Values that the state does not name are left alone, and null removes a
value. Otherwise it works like set.

Options:
  --help
      print this help
)" + how_to_change);
}

TEST_F(Help, OfRestore) {
    EXPECT_EQ(
        help_of("restore"),
        R"(usage: tavrinctl restore [BACKUP.reg] [--last] [--json] [--verbose] [--what-if] [--exit-code] [--restart auto|never] [--timeout SECONDS] [--backup FOLDER] [--keep N]

Reads a backup that set, apply or restore saved, and no other file, and restores its values, whatever their
type. Name the file, or use --last for the newest one in the default folder. The current values are saved
first, so the next restore --last undoes this one. Otherwise it works like set.

Options:
  --help
      print this help
)" + how_to_change +
            R"(  --last
      restore the newest backup in the default folder
)");
}

TEST_F(Help, OfTest) {
    EXPECT_EQ(help_of("test"), R"(usage: tavrinctl test [CONFIG] [--json] [--verbose] [--timeout SECONDS]

Tests every server on the list of one configuration, or of every configuration that has a connection test,
and prints each result. The exit code is 6 if a server refused, or could not be reached. --timeout limits the
whole attempt for one server, including the look-up of its name.

Options:
  --help
      print this help
  --json
      print JSON, for programs; the default is text, for people
  --verbose
      print progress on the standard error stream even if it is not a terminal
  --timeout SECONDS
      seconds for each wait: 1 to 86400, default 60
)");
}

TEST_F(Help, OfScan) {
    EXPECT_EQ(help_of("scan"), R"(usage: tavrinctl scan [--json] [--verbose] [--port N] [--wait SECONDS]

Looks for servers on the local networks by broadcast, and prints the addresses of those that answer. The exit
code is 0 even if no server answers.

Options:
  --help
      print this help
  --json
      print JSON, for programs; the default is text, for people
  --verbose
      print progress on the standard error stream even if it is not a terminal
  --port N
      1 to 65535; default: the port of the first configuration with a server list
  --wait SECONDS
      how many seconds without an answer end each of the three passes: 1 to 60, default 1
)");
}

TEST_F(Help, OfTemplate) {
    EXPECT_EQ(
        help_of("template"),
        R"(usage: tavrinctl template FILE... --format admx|gpp|reg --out FOLDER [--state STATE.json] [--code-page N]

Writes for each spec file:

    admx   NAME.admx and en-US\NAME.adml, a policy for each entry
    gpp    NAME.xml, registry items for Group Policy Preferences
    reg    NAME.reg

The values are those of --state, which is checked as apply checks it, or else those of this machine. In gpp
and reg, an item without a value does nothing until someone sets its value. Prints the paths of the files, and
lists the entries that cannot be mapped, with the reason.

Options:
  --help
      print this help
  --format admx|gpp|reg
      the output format
  --out FOLDER
      the folder for the files; it is created if it does not exist
  --state STATE.json
      the state file to check; for template, the one with the values (default: this machine's values)
  --code-page N
      the code page of the spec files: 1252, 65001 (UTF-8), ...; default: the machine's, 1252 on Linux
)");
}

TEST_F(Help, OfDiff) {
    EXPECT_EQ(help_of("diff"),
              R"(usage: tavrinctl diff DESIRED.json REPORT.json... [--format text|csv|json|html] [--exit-code]

A REPORT is the output of "show --json" on a machine, or a folder with such files (*.json). Prints which machines
drift and in which values, which could not be compared, which have a restart pending, which have another spec file,
and which services are not running. --format html makes a page for a browser. The exit code is 4 if a machine could not
be compared, also without --exit-code.

Options:
  --help
      print this help
  --exit-code
      exit with 3 if something differs, or differed before it was written
  --format text|csv|json|html
      the output format
)");
}

TEST_F(Help, OfDsc) {
    EXPECT_EQ(
        help_of("dsc"),
        R"(usage: tavrinctl dsc get|set|test|export|schema [--what-if] [--restart auto|never] [--timeout SECONDS] [--backup FOLDER] [--keep N]

The manifest of a DSC resource runs this command. It reads an instance from the standard input (get, set, test) and
prints JSON, one object per line; messages are JSON on the standard error stream. The exit code is 0 unless
the command fails.

Options:
  --help
      print this help
  --what-if
      print what would change and write nothing
  --restart auto|never
      auto (the default): restart a running service around the change; never: leave it alone
  --timeout SECONDS
      seconds for each wait: 1 to 86400, default 60
  --backup FOLDER
      the folder for the previous values; default: Tavrin\Backup in C:\ProgramData
  --keep N
      how many backups to keep in the default folder: 1 to 100000, default 50
)");
}

TEST_F(Help, OfCompletion) {
    EXPECT_EQ(help_of("completion"), R"(usage: tavrinctl completion bash|powershell

Prints a script with which a shell completes the commands of tavrinctl and their options. Source it in bash,
or add it to your PowerShell profile:

    source <(tavrinctl completion bash)
    tavrinctl completion powershell >> $PROFILE

Options:
  --help
      print this help
)");
}

TEST_F(Help, OfARestoreOfNothing) {
    const Ended done = run({"restore"});
    EXPECT_EQ(done.code, ctl::ExitCode::usage);
    EXPECT_THAT(done.err, testing::StartsWith("tavrinctl: restore needs either a backup or --last\nusage: "
                                              "tavrinctl restore [BACKUP.reg] [--last]"));
}

} // namespace
