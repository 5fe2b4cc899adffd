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
    std::optional<unsigned> code_page;
};

/// What a verb is called, how it is used and what runs it.
struct Verb {
    const char* name;
    /// Its operands, for the usage line.
    const char* operands;
    std::size_t least_operands;
    std::size_t most_operands;
    /// The names of its options, each with a blank in front: " --json --timeout".
    const char* options;
    const char* help;
    /// Returns the exit code; throws Failure.
    int (*run)(const Arguments&);
    /// Every message is JSON, also one about the command line.
    bool speaks_json = false;
};

/// Reads what follows the verb. Throws Failure of the code `usage` for what the verb does not take.
Arguments parse_arguments(const Verb& verb, const std::vector<std::string>& words);

/// The usage line of a verb, with the options as one types them.
std::string usage_of(const Verb& verb);

} // namespace ctl
