#include "ctl/diff/formats.h"

#include "ctl/io/console.h"
#include "ctl/io/printable.h"

#include <algorithm>

namespace ctl {
namespace {

constexpr std::size_t machine_width = 16;
constexpr std::size_t state_width = 7;
constexpr std::size_t value_width = 16;
constexpr std::size_t text_width = 16;
/// To the right of machine and state, with two spaces between columns: 79 columns in all.
constexpr std::size_t right_width = value_width + 2 * text_width + 4;

/// The octets of the first `width` characters.
std::size_t size_of_first(const std::string& text, std::size_t width) {
    std::size_t at = 0;
    while (at < text.size() && (width > 0 || is_tail(text[at])))
        width -= is_tail(text[at++]) ? 0 : 1;
    return at;
}

/// Pads the text with spaces, or cuts it and adds three dots.
std::string column(const std::string& text, std::size_t width) {
    return padded(width_of(text) > width ? text.substr(0, size_of_first(text, width - 3)) + "..." : text,
                  width);
}

/// Breaks lines at spaces where possible.
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
    return column(value, value_width) + column(desired, text_width) + column(current, text_width);
}

void add_differences(std::vector<std::string>& lines, const MachineDifferences& machine) {
    const std::string* configuration = nullptr;
    for (const Difference& each : machine.differences) {
        const bool is_next = configuration != nullptr && *configuration != each.configuration;
        if (is_next ||
            (configuration == nullptr && each.configuration != machine.differences.back().configuration))
            add_wrapped(lines, "[" + printable(each.configuration) + "]");
        configuration = &each.configuration;
        lines.push_back(row(printable(each.value), shown(each.desired), shown(each.current)));
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

/// A name that is too long gets its own line, because a cut name is useless.
void print_machine(const MachineDifferences& machine) {
    std::string name = printable(machine.machine);
    if (width_of(name) > machine_width)
        print_line(std::exchange(name, ""));
    std::string left = column(name, machine_width) + column(state_word(machine), state_width);
    for (const std::string& line : lines_about(machine)) {
        print_line(left + line);
        left.assign(machine_width + state_width + 4, ' ');
    }
}

std::string counted(std::size_t count, const char* what) { return ", " + std::to_string(count) + " " + what; }

/// Whether a spreadsheet would take the text for a formula unless an apostrophe precedes it. A number is not
/// a formula.
bool is_formula(const std::string& text) {
    if (text.empty() || std::string("=+-@\t\r").find(text.front()) == std::string::npos)
        return false;
    return text.front() != '-' || text.find_first_not_of("0123456789", 1) != std::string::npos;
}

std::string cell(const std::string& text) {
    std::string quoted = is_formula(text) ? "\"'" : "\"";
    for (const char byte : text)
        quoted += byte == '"' ? std::string("\"\"") : std::string(1, byte);
    return quoted + '"';
}

void print_row(const std::vector<std::string>& cells) {
    std::string line;
    for (const std::string& each : cells)
        line += (line.empty() ? "" : ",") + cell(each);
    print(line + "\r\n");
}

std::string joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& each : texts)
        all += (all.empty() ? "" : "; ") + each;
    return all;
}

void print_rows(const MachineDifferences& machine) {
    std::vector<std::string> cells{machine.machine, machine.time, state_word(machine), machine.problem,
                                   joined(notes_on(machine))};
    cells.resize(9);
    if (machine.differences.empty())
        print_row(cells);
    for (const Difference& each : machine.differences) {
        cells[5] = each.configuration;
        cells[6] = each.value;
        cells[7] = shown(each.desired);
        cells[8] = shown(each.current);
        print_row(cells);
    }
}

Json json_of(const Difference& difference) {
    return {{"desired", json_of(difference.desired)}, {"current", json_of(difference.current)}};
}

Json json_of(const std::vector<Difference>& differences) {
    Json configurations = Json::object();
    for (const Difference& each : differences) {
        Json& values = configurations[each.configuration];
        if (values.is_null())
            values = Json::object();
        add_member(values, each.value, json_of(each));
    }
    return configurations;
}

Json json_of(const MachineDifferences& machine) {
    Json json{{"machine", machine.machine},
              {"inSync", machine.in_sync()},
              {"restartPending", machine.restart_pending},
              {"problem", machine.problem.empty() ? Json() : Json(machine.problem)},
              {"differences", json_of(machine.differences)}};
    if (machine.other_spec_file)
        json["otherSpecFile"] = true;
    return json;
}

/// Indented as an element of the list of machines.
std::string indented(const Json& json) {
    std::string text = "    ";
    for (const char byte : json.dump(2, ' ', true, Json::error_handler_t::replace))
        text += byte == '\n' ? std::string("\n    ") : std::string(1, byte);
    return text;
}

} // namespace

Fleet::Fleet(std::vector<MachineDifferences> all) : machines(std::move(all)) {
    for (const MachineDifferences& each : machines) {
        in_sync += each.in_sync();
        with_problems += !each.problem.empty();
        restart_pending += each.restart_pending;
        other_spec_file += each.other_spec_file;
    }
    drifting = machines.size() - in_sync - with_problems;
}

const char* state_word(const MachineDifferences& machine) {
    if (!machine.problem.empty())
        return "problem";
    return machine.differences.empty() ? "in sync" : "drift";
}

std::vector<std::string> notes_on(const MachineDifferences& machine) {
    std::vector<std::string> notes;
    if (machine.restart_pending)
        notes.emplace_back("restart pending");
    if (machine.other_spec_file)
        notes.emplace_back("another spec file");
    for (const ReportedService& each : machine.services) {
        if (each.state != "running" || each.start_type == "disabled") {
            notes.push_back(printable(each.name) + ": " + printable(each.state) +
                            (each.start_type == "disabled" ? ", disabled" : ""));
        }
    }
    return notes;
}

void print_text(const Fleet& fleet) {
    print_line(column("MACHINE", machine_width) + column("STATE", state_width) +
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

void print_csv(const Fleet& fleet) {
    print("machine,time,state,problem,notes,configuration,value,desired,current\r\n");
    for (const MachineDifferences& each : fleet.machines)
        print_rows(each);
}

void print_json(const Fleet& fleet) {
    const bool in_sync = fleet.in_sync == fleet.machines.size();
    print(std::string("{\n  \"schema\": ") + std::to_string(schema_version) +
          ",\n  \"inSync\": " + (in_sync ? "true" : "false") + ",\n  \"machines\": [");
    for (const MachineDifferences& each : fleet.machines)
        print((&each == fleet.machines.data() ? "\n" : ",\n") + indented(json_of(each)));
    print("\n  ]\n}\n");
}

} // namespace ctl
