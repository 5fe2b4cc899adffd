#include "ctl/arguments.h"

#include "base/text.h"
#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/system.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <getopt.h>
#include <limits>

namespace ctl {
namespace {

[[noreturn]] void refuse(const Verb& verb, const std::string& text) {
    throw Failure{ExitCode::usage, text + "\nusage: " + usage_of(verb)};
}

/// The number that an option takes, between bounds.
struct NumberOption {
    const char* name;
    unsigned least;
    unsigned most;
};

unsigned number_of(const Verb& verb, const NumberOption& option, const char* text) {
    unsigned number = 0;
    const char* const end = text + std::strlen(text);
    const auto [stopped, error] = std::from_chars(text, end, number);
    if (error != std::errc() || stopped != end || number < option.least || number > option.most) {
        refuse(verb, std::string(option.name) + " takes a number from " + std::to_string(option.least) +
                         " to " + std::to_string(option.most) + ", not \"" + text + "\"");
    }
    return number;
}

unsigned code_page_named(const Verb& verb, const char* text) {
    const unsigned number =
        number_of(verb, {"--code-page", 1, std::numeric_limits<std::uint16_t>::max()}, text);
    if (!is_code_page(number))
        refuse(verb, std::string("unknown code page ") + text);
    return number;
}

struct Option {
    const char* name;
    /// Whether it takes a value.
    bool has_value;
    void (*take)(const Verb&, Arguments&, const char* value);
    /// For the help.
    const char* about;
};

constexpr unsigned a_day = 86400;
constexpr unsigned most_backups = 100000;

constexpr Option options[] = {
    {"help", false, [](const Verb&, Arguments& to, const char*) { to.help = true; }, "print this help"},
    {"json", false, [](const Verb&, Arguments& to, const char*) { to.json = true; },
     "print JSON, for programs; the default is text, for people"},
    {"verbose", false, [](const Verb&, Arguments& to, const char*) { to.verbose = true; },
     "print progress on the standard error stream even if it is not a terminal"},
    {"what-if", false, [](const Verb&, Arguments& to, const char*) { to.what_if = true; },
     "print what would change and write nothing"},
    {"exit-code", false, [](const Verb&, Arguments& to, const char*) { to.exit_code = true; },
     "exit with 3 if something differs, or differed before it was written"},
    {"restart", true,
     [](const Verb&, Arguments& to, const char* value) { to.restart = std::strcmp(value, "auto") == 0; },
     "auto (the default): restart a running service around the change; never: leave it alone"},
    {"timeout", true,
     [](const Verb& verb, Arguments& to, const char* value) {
         to.timeout = static_cast<int>(number_of(verb, {"--timeout", 1, a_day}, value));
     },
     "seconds for each wait: 1 to 86400, default 60"},
    {"port", true,
     [](const Verb& verb, Arguments& to, const char* value) {
         to.port = static_cast<std::uint16_t>(number_of(verb, {"--port", 1, 65535}, value));
     },
     "1 to 65535; default: the port of the first configuration with a server list"},
    {"wait", true,
     [](const Verb& verb, Arguments& to, const char* value) {
         to.wait = static_cast<int>(number_of(verb, {"--wait", 1, 60}, value));
     },
     "how many seconds without an answer end each of the three passes: 1 to 60, default 1"},
    {"format", true, [](const Verb&, Arguments& to, const char* value) { to.format = value; },
     "the output format"},
    {"out", true, [](const Verb&, Arguments& to, const char* value) { to.out = value; },
     "the folder for the files; it is created if it does not exist"},
    {"state", true, [](const Verb&, Arguments& to, const char* value) { to.state = value; },
     "the state file to check; for template, the one with the values (default: this machine's values)"},
    {"backup", true, [](const Verb&, Arguments& to, const char* value) { to.backup = full_path(value); },
     "the folder for the previous values; default: Tavrin\\Backup in C:\\ProgramData"},
    {"keep", true,
     [](const Verb& verb, Arguments& to, const char* value) {
         to.keep = number_of(verb, {"--keep", 1, most_backups}, value);
     },
     "how many backups to keep in the default folder: 1 to 100000, default 50"},
    {"last", false, [](const Verb&, Arguments& to, const char*) { to.last = true; },
     "restore the newest backup in the default folder"},
    {"code-page", true,
     [](const Verb& verb, Arguments& to, const char* value) { to.code_page = code_page_named(verb, value); },
     "the code page of the spec files: 1252, 65001 (UTF-8), ...; default: the machine's, 1252 on Linux"},
};

/// The place of the option in the usage line, after a bracket if it is optional; null if it is not there.
const char* in_usage(const Verb& verb, const Option& option) {
    const std::string name = std::string("--") + option.name;
    for (const char* at = std::strstr(verb.usage, name.c_str()); at != nullptr;
         at = std::strstr(at + 1, name.c_str())) {
        if (std::strchr(" ]", at[name.size()]) != nullptr)
            return at;
    }
    return nullptr;
}

bool takes(const Verb& verb, const Option& option) {
    return std::strcmp(option.name, "help") == 0 || in_usage(verb, option) != nullptr;
}

bool requires_option(const Verb& verb, const Option& option) {
    const char* const at = in_usage(verb, option);
    return at != nullptr && (at == verb.usage || at[-1] == ' ');
}

/// The option as the usage line has it: "--timeout SECONDS".
std::string typed(const Verb& verb, const Option& option) {
    std::string name = std::string("--") + option.name;
    const char* const at = in_usage(verb, option);
    if (at == nullptr || !option.has_value)
        return name;
    return {at, at + name.size() + 1 + std::strcspn(at + name.size() + 1, " ]")};
}

/// Splits "auto|never". A placeholder with capital letters, such as FILE, offers no words.
std::vector<std::string> words_of(const std::string& placeholder) {
    std::vector<std::string> words;
    const bool is_choice = placeholder.find('|') != std::string::npos &&
                           placeholder.find_first_not_of("abcdefghijklmnopqrstuvwxyz|") == std::string::npos;
    if (is_choice)
        split_string(words, placeholder, '|', false);
    return words;
}

void check_choice(const Verb& verb, const Option& option, const std::string& value) {
    const std::vector<std::string> choices = choices_of(verb, option.name);
    if (choices.empty() || std::find(choices.begin(), choices.end(), value) != choices.end())
        return;
    refuse(verb, "\"" + value + "\" is not valid for " + typed(verb, option));
}

/// getopt_long returns the option's place in the table plus this, which is above every character.
constexpr int first_code = 256;
constexpr int operand_code = 1;

std::vector<option> known_to_getopt() {
    std::vector<option> known;
    int code = first_code;
    for (const Option& each : options) {
        known.push_back({each.name, each.has_value ? required_argument : no_argument, nullptr, code++});
    }
    known.push_back({nullptr, 0, nullptr, 0});
    return known;
}

/// getopt_long reorders the texts, and expects the program's name first.
std::vector<char*> pointers_to(std::vector<std::string>& words) {
    std::vector<char*> pointers;
    std::transform(words.begin(), words.end(), std::back_inserter(pointers),
                   [](std::string& word) { return word.data(); });
    pointers.push_back(nullptr);
    return pointers;
}

/// Whether each option of the table was given.
using Given = std::array<bool, std::size(options)>;

void take(const Verb& verb, Arguments& arguments, Given& given, int code, const char* word) {
    if (code == operand_code) {
        arguments.operands.emplace_back(optarg);
        return;
    }
    if (code == ':')
        refuse(verb, std::string(word) + " needs a value");
    if (code < first_code)
        refuse(verb, std::string("unknown option ") + word);
    const Option& option = options[code - first_code];
    if (!takes(verb, option))
        refuse(verb, std::string(verb.name) + " does not take --" + option.name);
    if (option.has_value)
        check_choice(verb, option, optarg);
    option.take(verb, arguments, optarg);
    given[static_cast<std::size_t>(code - first_code)] = true;
}

void check_operands(const Verb& verb, const Arguments& arguments) {
    if (arguments.operands.size() < verb.least_operands)
        refuse(verb, std::string(verb.name) + ": missing arguments");
    const std::vector<std::string> choices = choices_of(verb, "");
    if (!choices.empty() &&
        std::find(choices.begin(), choices.end(), arguments.operands.front()) == choices.end())
        refuse(verb, "\"" + arguments.operands.front() + "\" is not valid for " + verb.name);
    if (arguments.operands.size() > verb.most_operands)
        refuse(verb, "unexpected argument \"" + arguments.operands[verb.most_operands] + "\"");
}

void check_required(const Verb& verb, const Given& given) {
    for (std::size_t i = 0; i < given.size(); ++i) {
        if (!given[i] && requires_option(verb, options[i]))
            refuse(verb, std::string(verb.name) + " needs " + typed(verb, options[i]));
    }
}

} // namespace

Arguments parse_arguments(const Verb& verb, const std::vector<std::string>& words) {
    std::vector<std::string> own{"tavrinctl"};
    own.insert(own.end(), words.begin(), words.end());
    std::vector<char*> pointers = pointers_to(own);
    const int count = static_cast<int>(own.size());
    const std::vector<option> known = known_to_getopt();
    Arguments arguments;
    Given given{};
    opterr = 0;
    optind = 0; // starts over
    // "-" returns operands in their order, whatever the environment says; ":" reports a missing value.
    while (true) {
        const int at = std::max(optind, 1);
        const int code = getopt_long(count, pointers.data(), "-:", known.data(), nullptr);
        if (code == -1)
            break;
        take(verb, arguments, given, code, own[static_cast<std::size_t>(std::min(at, count - 1))].c_str());
    }
    for (int i = optind; i < count; ++i)
        arguments.operands.emplace_back(own[static_cast<std::size_t>(i)]);
    if (!arguments.help) {
        check_operands(verb, arguments);
        check_required(verb, given);
    }
    return arguments;
}

std::string usage_of(const Verb& verb) {
    return std::string("tavrinctl ") + verb.name + (*verb.usage == '\0' ? "" : " ") + verb.usage;
}

std::vector<std::string> choices_of(const Verb& verb, const std::string& option) {
    if (option.empty())
        return words_of(std::string(verb.usage, std::strcspn(verb.usage, " ")));
    const auto* const found = std::find_if(std::begin(options), std::end(options),
                                           [&](const Option& each) { return each.name == option; });
    const std::string use = typed(verb, *found);
    return words_of(use.substr(std::min(use.size(), option.size() + 3)));
}

std::vector<std::string> option_names_of(const Verb& verb) {
    std::vector<std::string> names;
    for (const Option& option : options) {
        if (takes(verb, option))
            names.push_back(std::string("--") + option.name);
    }
    return names;
}

std::string options_of(const Verb& verb) {
    std::string lines;
    for (const Option& option : options) {
        if (takes(verb, option))
            lines += "  " + typed(verb, option) + "\n      " + option.about + "\n";
    }
    return lines;
}

} // namespace ctl
