#pragma once
/// The command line of every verb. The C library's getopt_long reads it, because larger libraries bring
/// streams and locales, which would make the program four times as large.
#include "ctl/failure.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ctl {

struct Arguments {
    std::vector<std::string> operands;
    bool help = false;
    bool json = false;
    bool verbose = false;
    bool what_if = false;
    bool exit_code = false;
    bool restart = true;
    /// Seconds, for each wait.
    int timeout = 60;
    std::optional<std::uint16_t> port;
    /// Seconds of silence that end a scan.
    int wait = 1;
    std::string format;
    std::string out;
    std::string state;
    std::string backup;
    /// The number of backups that stay in the default folder.
    unsigned keep = 50;
    /// Restore the newest of them.
    bool last = false;
    std::optional<unsigned> code_page;
};

struct Verb {
    const char* name;
    /// The usage line after the name. An option outside brackets is required.
    const char* usage = "";
    std::size_t least_operands = 0;
    std::size_t most_operands = 0;
    /// For the list of all verbs.
    const char* summary = "";
    const char* help = "";
    /// Throws Failure. Null if the verb needs Windows and this is another system.
    ExitCode (*run)(const Arguments&) = nullptr;
    /// Every message is JSON, even one about the command line.
    bool speaks_json = false;
};

/// Reads the words after the verb. Throws Failure of the code `usage` for words that the verb does not take.
Arguments parse_arguments(const Verb& verb, const std::vector<std::string>& words);

/// "tavrinctl check FILE...".
std::string usage_of(const Verb& verb);
/// The words that the usage line offers for an option, named without its dashes, or with an empty name for
/// the first operand: "get|set". Empty if everything is allowed.
std::vector<std::string> choices_of(const Verb& verb, const std::string& option);
/// The options that the verb takes: "--json".
std::vector<std::string> option_names_of(const Verb& verb);
/// Explains each option that the verb takes, with its range and default.
std::string options_of(const Verb& verb);

} // namespace ctl
