#pragma once
/// The command line of every verb, read by the C library's getopt_long: the larger libraries for it bring the
/// streams and locales along, which cost three times the rest of the program.
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
    /// Seconds that one wait may last.
    int timeout = 60;
    std::optional<std::uint16_t> port;
    /// Seconds of silence that end a scan.
    int wait = 1;
    std::string format;
    std::string out;
    std::string state;
    std::string backup;
    /// How many backups stay in the default folder.
    unsigned keep = 50;
    /// The newest backup there.
    bool last = false;
    std::optional<unsigned> code_page;
};

/// What a verb is called, how it is used and what runs it.
struct Verb {
    const char* name;
    /// What follows the name in the usage line. An option outside of brackets is required.
    const char* usage = "";
    std::size_t least_operands = 0;
    std::size_t most_operands = 0;
    /// For the list of all verbs.
    const char* summary = "";
    const char* help = "";
    /// Returns the exit code; throws Failure. Null where the verb needs Windows and this is another system.
    int (*run)(const Arguments&) = nullptr;
    /// Every message is JSON, also one about the command line.
    bool speaks_json = false;
};

/// Reads what follows the verb. Throws Failure of the code `usage` for what the verb does not take.
Arguments parse_arguments(const Verb& verb, const std::vector<std::string>& words);

/// "tavrinctl check FILE...".
std::string usage_of(const Verb& verb);
/// The words between which the usage line lets one choose, "get|set"; for an option by its name without the
/// strokes, for the first operand by the empty name. Empty when anything goes.
std::vector<std::string> choices_of(const Verb& verb, const std::string& option);
/// The names of the options that the verb takes, "--json".
std::vector<std::string> option_names_of(const Verb& verb);
/// A line for each option that the verb takes: what it means, its range and its default.
std::string options_of(const Verb& verb);

} // namespace ctl
