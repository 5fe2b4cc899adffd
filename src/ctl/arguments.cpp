#include "ctl/arguments.h"

#include "ctl/failure.h"
#include "ctl/io/encoding.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <getopt.h>
#include <limits>

namespace ctl {
namespace {

[[noreturn]] void refuse(const Verb& verb, const std::string& text) {
    throw Failure{usage, text + "\nusage: " + usage_of(verb)};
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

bool restart_wanted(const Verb& verb, const std::string& text) {
    if (text != "auto" && text != "never")
        refuse(verb, "--restart is auto or never, not \"" + text + "\"");
    return text == "auto";
}

unsigned code_page_named(const Verb& verb, const char* text) {
    const unsigned number =
        number_of(verb, {"--code-page", 1, std::numeric_limits<std::uint16_t>::max()}, text);
    if (!is_code_page(number))
        refuse(verb, std::string("there is no code page ") + text);
    return number;
}

struct Option {
    const char* name;
    /// What it takes, for the usage line; null for a switch.
    const char* value;
    void (*take)(const Verb&, Arguments&, const char* value);
};

constexpr unsigned a_day = 86400;

constexpr Option options[] = {
    {"help", nullptr, [](const Verb&, Arguments& to, const char*) { to.help = true; }},
    {"json", nullptr, [](const Verb&, Arguments& to, const char*) { to.json = true; }},
    {"verbose", nullptr, [](const Verb&, Arguments& to, const char*) { to.verbose = true; }},
    {"what-if", nullptr, [](const Verb&, Arguments& to, const char*) { to.what_if = true; }},
    {"exit-code", nullptr, [](const Verb&, Arguments& to, const char*) { to.exit_code = true; }},
    {"restart", "auto|never",
     [](const Verb& verb, Arguments& to, const char* value) { to.restart = restart_wanted(verb, value); }},
    {"timeout", "SECONDS",
     [](const Verb& verb, Arguments& to, const char* value) {
         to.timeout = static_cast<int>(number_of(verb, {"--timeout", 1, a_day}, value));
     }},
    {"port", "N",
     [](const Verb& verb, Arguments& to, const char* value) {
         to.port = static_cast<std::uint16_t>(number_of(verb, {"--port", 1, 65535}, value));
     }},
    {"wait", "SECONDS",
     [](const Verb& verb, Arguments& to, const char* value) {
         to.wait = static_cast<int>(number_of(verb, {"--wait", 1, 60}, value));
     }},
    {"format", "admx|gpp|reg", [](const Verb&, Arguments& to, const char* value) { to.format = value; }},
    {"out", "FOLDER", [](const Verb&, Arguments& to, const char* value) { to.out = value; }},
    {"state", "STATE.json", [](const Verb&, Arguments& to, const char* value) { to.state = value; }},
    {"backup", "FOLDER", [](const Verb&, Arguments& to, const char* value) { to.backup = value; }},
    {"code-page", "N",
     [](const Verb& verb, Arguments& to, const char* value) { to.code_page = code_page_named(verb, value); }},
};

bool takes(const Verb& verb, const Option& option) {
    const std::string known = std::string(verb.options) + " --help ";
    return known.find(std::string(" --") + option.name + " ") != std::string::npos;
}

/// The option's place in the table is what getopt_long returns, above every character.
constexpr int first_code = 256;
constexpr int operand_code = 1;

std::vector<option> known_to_getopt() {
    std::vector<option> known;
    int code = first_code;
    for (const Option& each : options) {
        known.push_back(
            {each.name, each.value != nullptr ? required_argument : no_argument, nullptr, code++});
    }
    known.push_back({nullptr, 0, nullptr, 0});
    return known;
}

/// getopt_long wants texts that it may exchange, the program's name first.
std::vector<char*> pointers_to(std::vector<std::string>& words) {
    std::vector<char*> pointers;
    std::transform(words.begin(), words.end(), std::back_inserter(pointers),
                   [](std::string& word) { return word.data(); });
    pointers.push_back(nullptr);
    return pointers;
}

void take(const Verb& verb, Arguments& arguments, int code, const char* word) {
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
    option.take(verb, arguments, optarg);
}

void check_operands(const Verb& verb, const Arguments& arguments) {
    if (arguments.help)
        return;
    if (arguments.operands.size() < verb.least_operands)
        refuse(verb, std::string(verb.name) + " needs more: " + verb.operands);
    if (arguments.operands.size() > verb.most_operands)
        refuse(verb, "\"" + arguments.operands[verb.most_operands] + "\" is too much");
}

} // namespace

Arguments parse_arguments(const Verb& verb, const std::vector<std::string>& words) {
    std::vector<std::string> own{"tavrinctl"};
    own.insert(own.end(), words.begin(), words.end());
    std::vector<char*> pointers = pointers_to(own);
    const int count = static_cast<int>(own.size());
    const std::vector<option> known = known_to_getopt();
    Arguments arguments;
    opterr = 0;
    optind = 0; // from the start, also a second time
    // "-": operands come in their place, whatever the environment says; ":": a missing value is told apart.
    while (true) {
        const int at = std::max(optind, 1);
        const int code = getopt_long(count, pointers.data(), "-:", known.data(), nullptr);
        if (code == -1)
            break;
        take(verb, arguments, code, own[static_cast<std::size_t>(std::min(at, count - 1))].c_str());
    }
    for (int i = optind; i < count; ++i)
        arguments.operands.emplace_back(own[static_cast<std::size_t>(i)]);
    check_operands(verb, arguments);
    return arguments;
}

std::string usage_of(const Verb& verb) {
    std::string line = std::string("tavrinctl ") + verb.name;
    if (*verb.operands != '\0')
        line += std::string(" ") + verb.operands;
    for (const Option& option : options) {
        if (takes(verb, option) && std::strcmp(option.name, "help") != 0) {
            line += std::string(" [--") + option.name +
                    (option.value != nullptr ? std::string(" ") + option.value : "") + "]";
        }
    }
    return line;
}

} // namespace ctl
