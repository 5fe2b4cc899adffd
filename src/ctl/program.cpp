#include "ctl/program.h"

#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/verbs/verbs.h"

#include <algorithm>
#include <exception>

namespace ctl {
namespace {

constexpr const char* about_exit_codes = R"(
Exit codes:
  0  success, whether or not anything changed (or would change)
  1  failure: a file, the registry or the network
  2  the command line is wrong
  3  something differs (only with --exit-code)
  4  an invalid value, name, state or spec file; nothing was written
  5  access denied
  6  a server refused, or could not be reached
  7  the values were written, but the service was not restarted
)";

std::string line_of(const Verb& verb) {
    std::string line = std::string("  ") + verb.name;
    line.resize(14, ' ');
    return line + verb.summary + "\n";
}

std::string whole_help() {
    std::string text =
        "tavrinctl " TAVRIN_VERSION ": shows, checks and changes the settings of the Tavrin Agent\n\n";
    std::string elsewhere;
    for (const Verb* verb : verbs) {
        if (verb->run != nullptr) {
            text += line_of(*verb);
        } else {
            elsewhere += std::string(elsewhere.empty() ? "" : ", ") + verb->name;
        }
    }
    if (!elsewhere.empty())
        text += "\nOnly on Windows: " + elsewhere + "\n";
    return text + "\n\"tavrinctl COMMAND --help\" explains a command, its options and their defaults.\n" +
           about_exit_codes;
}

std::string help_on(const Verb& verb) {
    return "usage: " + usage_of(verb) + "\n" + verb.help + "\nOptions:\n" + options_of(verb) +
           about_exit_codes;
}

const Verb& find_verb(const std::string& name) {
    const auto* const found = std::find_if(std::begin(verbs), std::end(verbs),
                                           [&](const Verb* verb) { return verb->name == name; });
    if (found == std::end(verbs))
        throw Failure{ExitCode::usage, "unknown command \"" + name + "\"; see tavrinctl --help"};
    if ((*found)->run == nullptr)
        throw Failure{ExitCode::usage, name + " needs Windows"};
    return **found;
}

ExitCode run_verb(const std::vector<std::string>& words) {
    const Verb& verb = find_verb(words.front());
    set_message_form({.is_json = verb.speaks_json});
    const Arguments arguments = parse_arguments(verb, {words.begin() + 1, words.end()});
    set_message_form({.is_json = verb.speaks_json, .is_verbose = arguments.verbose});
    if (arguments.help) {
        print(help_on(verb));
        return ExitCode::success;
    }
    return verb.run(arguments);
}

ExitCode run(const std::vector<std::string>& words) {
    if (words.empty())
        throw Failure{ExitCode::usage, "missing command\n\n" + whole_help()};
    ExitCode code = ExitCode::success;
    if (words.front() == "--help" || words.front() == "help") {
        print(whole_help());
    } else if (words.front() == "--version") {
        print("tavrinctl " TAVRIN_VERSION "\n");
    } else {
        code = run_verb(words);
    }
    finish_output();
    return code;
}

} // namespace

/// The store throws plain texts, and the standard library its own exceptions, for example if memory runs out.
ExitCode run_program(const std::vector<std::string>& words) {
    begin_output();
    try {
        return run(words);
    } catch (const Failure& failure) {
        say(failure.text);
        return failure.code;
    } catch (const std::string& text) {
        say(text);
        return ExitCode::failed;
    } catch (const std::exception& failure) {
        say(failure.what());
        return ExitCode::failed;
    }
}

} // namespace ctl
