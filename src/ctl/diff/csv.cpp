#include "ctl/diff/formats.h"
#include "ctl/io/console.h"

#include <algorithm>

namespace ctl {
namespace {

/// What a spreadsheet would take for a formula gets an apostrophe in front; a plain number stays one.
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

void print_machine(const MachineDifferences& machine) {
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

} // namespace

void print_csv(const Fleet& fleet) {
    print("machine,time,state,problem,notes,configuration,value,desired,current\r\n");
    for (const MachineDifferences& each : fleet.machines)
        print_machine(each);
}

} // namespace ctl
