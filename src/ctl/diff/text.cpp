#include "ctl/diff/formats.h"
#include "ctl/io/console.h"
#include "ctl/io/visible.h"

#include <algorithm>

namespace ctl {
namespace {

constexpr std::size_t machine_width = 16;
constexpr std::size_t state_width = 7;
constexpr std::size_t value_width = 16;
constexpr std::size_t text_width = 16;
/// Right of machine and state, with two blanks between columns: 79 columns in all.
constexpr std::size_t right_width = value_width + 2 * text_width + 4;

bool starts_character(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

std::size_t width_of(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), starts_character));
}

/// The octets of the first `width` characters.
std::size_t size_of_first(const std::string& text, std::size_t width) {
    std::size_t at = 0;
    while (at < text.size() && (width > 0 || !starts_character(text[at])))
        width -= starts_character(text[at++]);
    return at;
}

/// Filled up with blanks, or cut with three dots.
std::string cell(const std::string& text, std::size_t width) {
    const std::size_t needed = width_of(text);
    if (needed > width)
        return text.substr(0, size_of_first(text, width - 3)) + "...  ";
    return text + std::string(width - needed + 2, ' ');
}

/// Breaks at blanks where it can.
void add_wrapped(std::vector<std::string>& lines, std::string text) {
    while (width_of(text) > right_width) {
        const std::size_t most = size_of_first(text, right_width);
        const std::size_t blank = text.rfind(' ', most);
        const bool breaks = blank != std::string::npos && blank > 0;
        lines.push_back(text.substr(0, breaks ? blank : most));
        text.erase(0, breaks ? blank + 1 : most);
    }
    lines.push_back(std::move(text));
}

std::string row(const std::string& value, const std::string& desired, const std::string& current) {
    return cell(value, value_width) + cell(desired, text_width) + cell(current, text_width);
}

void add_differences(std::vector<std::string>& lines, const MachineDifferences& machine) {
    const std::string* configuration = nullptr;
    for (const Difference& each : machine.differences) {
        const bool is_next = configuration != nullptr && *configuration != each.configuration;
        if (is_next ||
            (configuration == nullptr && each.configuration != machine.differences.back().configuration))
            add_wrapped(lines, "[" + visible(each.configuration) + "]");
        configuration = &each.configuration;
        lines.push_back(row(visible(each.value), shown(each.desired), shown(each.current)));
    }
}

std::vector<std::string> lines_about(const MachineDifferences& machine) {
    std::vector<std::string> lines;
    if (!machine.problem.empty())
        add_wrapped(lines, machine.problem);
    add_differences(lines, machine);
    for (const std::string& note : notes_on(machine))
        add_wrapped(lines, note);
    if (lines.empty())
        lines.emplace_back();
    return lines;
}

void print_line(std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    print(line + "\n");
}

/// A longer name has a line of its own: a name that is cut names nothing.
void print_machine(const MachineDifferences& machine) {
    std::string name = visible(machine.machine);
    if (width_of(name) > machine_width)
        print_line(std::exchange(name, ""));
    std::string left = cell(name, machine_width) + cell(state_word(machine), state_width);
    for (const std::string& line : lines_about(machine)) {
        print_line(left + line);
        left.assign(machine_width + state_width + 4, ' ');
    }
}

std::string counted(std::size_t count, const char* what) { return ", " + std::to_string(count) + " " + what; }

} // namespace

void print_text(const Fleet& fleet) {
    print_line(cell("MACHINE", machine_width) + cell("STATE", state_width) +
               row("VALUE", "DESIRED", "CURRENT"));
    for (const MachineDifferences& each : fleet.machines)
        print_machine(each);
    std::string summary = "\nmachines: " + std::to_string(fleet.machines.size()) +
                          counted(fleet.in_sync, "in sync") + counted(fleet.drifting, "drift") +
                          counted(fleet.with_problems, "with a problem");
    if (fleet.restart_pending != 0)
        summary += counted(fleet.restart_pending, "restart pending");
    if (fleet.other_spec_file != 0)
        summary += counted(fleet.other_spec_file, "another spec file");
    print_line(summary);
}

} // namespace ctl
