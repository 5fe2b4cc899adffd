#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/verbs/verbs.h"

namespace ctl {
namespace {

/// The words that may be typed at a place of the command line. The name of the place is the verb, or the verb
/// and the option before it; empty for the verb itself.
struct Place {
    std::string name;
    std::vector<std::string> words;
};

void add_places(std::vector<Place>& places, const Verb& verb) {
    const std::vector<std::string> names = option_names_of(verb);
    Place own{verb.name, choices_of(verb, "")};
    own.words.insert(own.words.end(), names.begin(), names.end());
    places.push_back(own);
    for (const std::string& name : names) {
        const std::vector<std::string> choices = choices_of(verb, name.substr(2));
        if (!choices.empty())
            places.push_back({std::string(verb.name) + " " + name, choices});
    }
}

std::vector<Place> all_places() {
    std::vector<Place> places{{"", {}}};
    for (const Verb* const verb : verbs) {
        if (verb->run == nullptr)
            continue;
        places.front().words.emplace_back(verb->name);
        add_places(places, *verb);
    }
    places.front().words.insert(places.front().words.end(), {"--help", "--version"});
    return places;
}

std::string joined(const std::vector<std::string>& words, const char* before, const char* between) {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? before : between) + word;
    return text;
}

std::string for_bash() {
    std::string cases;
    for (const Place& each : all_places())
        cases += "        '" + each.name + "') words='" + joined(each.words, "", " ") + "' ;;\n";
    return R"(# Completion for bash: source it, or put it into /usr/share/bash-completion/completions/tavrinctl
_tavrinctl_words() {
    local words=
    case $1 in
)" + cases +
           R"(    esac
    printf '%s' "$words"
}
_tavrinctl() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} verb= words
    [ "$COMP_CWORD" -eq 1 ] || verb=${COMP_WORDS[1]}
    words=$(_tavrinctl_words "$verb${verb:+ $before}")
    [ -n "$words" ] || words=$(_tavrinctl_words "$verb")
    COMPREPLY=($(compgen -W "$words" -- "$word"))
}
complete -o default -F _tavrinctl tavrinctl
)";
}

std::string for_powershell() {
    std::string rows;
    for (const Place& each : all_places())
        rows += "        '" + each.name + "' = " + joined(each.words, "'", "', '") + "'\n";
    return R"(# Completion for PowerShell: add it to the file that $PROFILE names
Register-ArgumentCompleter -Native -CommandName 'tavrinctl', 'tavrinctl.exe' -ScriptBlock {
    param($word, $ast, $cursor)
    $known = @{
)" + rows + R"(    }
    $typed = @($ast.CommandElements | Select-Object -Skip 1 | ForEach-Object { $_.ToString() })
    if ($word) { $typed = @($typed | Select-Object -SkipLast 1) }
    $place = if ($typed.Count -eq 0) { '' } else { $typed[0] + ' ' + $typed[-1] }
    if (-not $known.ContainsKey($place)) { $place = $typed[0] }
    @($known[$place]) | Where-Object { $_ -like "$word*" }
}
)";
}

ExitCode complete(const Arguments& arguments) {
    print(arguments.operands.front() == "bash" ? for_bash() : for_powershell());
    return ExitCode::success;
}

} // namespace

const Verb completion_verb{
    .name = "completion",
    .usage = "bash|powershell",
    .least_operands = 1,
    .most_operands = 1,
    .summary = "print a script for shell completion of commands and options",
    .help = R"(
Prints a script with which a shell completes the commands of tavrinctl and their options. Source it in bash,
or add it to your PowerShell profile:

    source <(tavrinctl completion bash)
    tavrinctl completion powershell >> $PROFILE
)",
    .run = complete,
};

} // namespace ctl
