#pragma once
/// Every verb with its help, beside what runs it.
#include "ctl/arguments.h"

#include <limits>

namespace ctl {

inline constexpr std::size_t any_number = std::numeric_limits<std::size_t>::max();

int check(const Arguments& arguments);
int show(const Arguments& arguments);
int set(const Arguments& arguments);
int apply_state(const Arguments& arguments);
int test(const Arguments& arguments);
int scan(const Arguments& arguments);
int make_template(const Arguments& arguments);
int dsc(const Arguments& arguments);

inline constexpr Verb check_verb{
    "check",
    "FILE...",
    1,
    any_number,
    " --code-page ",
    "Looks through spec files and says what is wrong, a line each, as a compiler does:\n"
    "\n"
    "    file:line: error|warning: text\n"
    "\n"
    "Errors are what the window would refuse, warnings what its user would stumble over. Ends with 4 when "
    "there\n"
    "are errors. --code-page N names Windows' number of the code page that the files are written in; left "
    "out, it\n"
    "is the machine's own, and 1252 where there is no Windows.\n",
    check};

inline constexpr Verb show_verb{"show",
                                "[CONFIG]",
                                0,
                                1,
                                " --json ",
                                "Prints what is configured: the entries of one configuration, or of all, by "
                                "group, with value name, kind and\n"
                                "value. With --json it is what apply reads.\n",
                                show};

inline constexpr Verb set_verb{
    "set",
    "CONFIG NAME=VALUE...",
    2,
    any_number,
    " --json --verbose --what-if --exit-code --restart --timeout --backup ",
    "Sets values of one configuration. NAME is a value name in any letter case, "
    "or the title of an entry when only\n"
    "one has it. Everything is checked before anything is written; what is so "
    "already is left alone. The values as\n"
    "they were are kept in a .reg file, in the folder of --backup. With --restart "
    "auto, which is the default, the\n"
    "configuration's service is stopped and started around the writing when it "
    "runs, and waited for; --timeout is\n"
    "for each of these waits. Prints a line for each value that changed; with --json a report of all.\n",
    set};

inline constexpr Verb apply_verb{"apply",
                                 "STATE.json",
                                 1,
                                 1,
                                 " --json --verbose --what-if --exit-code --restart --timeout --backup ",
                                 "Makes the values what the state file says: what show --json prints, or the "
                                 "part of it that matters. A value\n"
                                 "of null is removed. --what-if only tells what would change, --exit-code "
                                 "ends with 3 when something differed;\n"
                                 "all else is as with set. \"-\" reads the state from the standard input.\n",
                                 apply_state};

inline constexpr Verb test_verb{"test",
                                "[CONFIG]",
                                0,
                                1,
                                " --json --verbose --timeout ",
                                "Negotiates with every server on the list of one configuration, or of each "
                                "that offers the connection test, and\n"
                                "prints what came of it. Ends with 6 when a server refused or was not "
                                "reached. --timeout is for each wait for a\n"
                                "server.\n",
                                test};

inline constexpr Verb scan_verb{
    "scan",
    "",
    0,
    0,
    " --json --verbose --port --wait ",
    "Looks for servers on the local networks and prints their addresses. Without --port it is the port of "
    "the first\n"
    "configuration that has a server list. A pass of three ends when nobody answered for --wait seconds.\n",
    scan};

inline constexpr Verb template_verb{
    "template",
    "FILE...",
    1,
    any_number,
    " --format --out --state --code-page ",
    "Makes from each spec file, in the folder of --out:\n"
    "\n"
    "    admx   NAME.admx and en-US/NAME.adml, a policy for each entry\n"
    "    gpp    NAME.xml, registry items for Group Policy Preferences\n"
    "    reg    NAME.reg\n"
    "\n"
    "For gpp and reg the values are those of --state, or of this machine; an item without a value does "
    "nothing until\n"
    "somebody gives it one. Prints the names of the files; what cannot be mapped is told with the reason.\n",
    make_template};

inline constexpr Verb dsc_verb{"dsc",
                               "get|set|test|export|schema",
                               1,
                               1,
                               " --what-if --restart --timeout --backup ",
                               "What the manifest of a DSC resource calls: reads an instance from the "
                               "standard input (get, set, test), prints\n"
                               "JSON, a line each, and messages as JSON on the standard error stream. Not "
                               "being in the desired state is no\n"
                               "error: only a failure ends with another code than 0.\n",
                               dsc,
                               true};

} // namespace ctl
