#include "ctl/change/state_file.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/io/printable.h"
#include "ctl/machine/machine.h"
#include "ctl/machine/service.h"
#include "ctl/verbs/verbs.h"

#include <algorithm>
#include <array>

namespace ctl {
namespace {

using Row = std::array<std::string, 3>;

Row row_of(const SpecEntry& entry, const StoredValue& value) {
    return {printable(to_utf8(entry.declaration.value_name.text)), std::string(entry.declaration.kind->type),
            entry.declaration.has_value() ? shown(value) : "(no value)"};
}

std::size_t widest(const std::vector<Row>& rows, std::size_t column) {
    std::size_t width = 0;
    for (const Row& row : rows)
        width = std::max(width, width_of(row[column]));
    return width;
}

std::string line_of(const Row& row, std::size_t name_width, std::size_t kind_width) {
    std::string line = "    " + padded(row[0], name_width) + padded(row[1], kind_width) + row[2];
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

/// "running, automatic, restart pending".
std::string shown_service(const MachineConfiguration& configuration) {
    const ServiceInfo info = service_info(configuration.service());
    return info.state + (info.start_type.empty() ? "" : ", " + info.start_type) +
           (restart_is_pending(configuration.service()) ? ", restart pending" : "");
}

void print_head(const MachineConfiguration& configuration) {
    std::string head = printable(to_utf8(configuration.name)) + "\n  key      HKEY_LOCAL_MACHINE\\" +
                       printable(to_utf8(configuration.key())) + "\n";
    if (!configuration.service().empty()) {
        head += "  service  " + printable(to_utf8(configuration.service())) + " (" +
                shown_service(configuration) + ")\n";
    }
    print(head);
}

/// Entries outside any group are in a group without a name.
void print_group(const MachineConfiguration& configuration, std::size_t group) {
    const std::string name = printable(to_utf8(configuration.spec.groups[group].name.text));
    if (!name.empty())
        print("  [" + name + "]\n");
}

void print_table(const MachineConfiguration& configuration) {
    const std::vector<StoredValue> values = stored_values(configuration);
    const std::vector<SpecEntry>& entries = configuration.spec.entries;
    std::vector<Row> rows;
    for (std::size_t i = 0; i < entries.size(); ++i)
        rows.push_back(row_of(entries[i], values[i]));
    const std::size_t name_width = widest(rows, 0);
    const std::size_t kind_width = widest(rows, 1);
    print_head(configuration);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (i == 0 || entries[i].group != entries[i - 1].group)
            print_group(configuration, entries[i].group);
        print(line_of(rows[i], name_width, kind_width));
    }
}

void print_json(const Configurations& configurations) {
    Json all = Json::object();
    for (const MachineConfiguration* each : configurations)
        all[to_utf8(each->name)] = json_of(*each);
    print(to_text({{"schema", schema_version},
                   {"machine", machine_identity()},
                   {"specFiles", spec_files_of(configurations)},
                   {"configurations", std::move(all)}}));
}

ExitCode show(const Arguments& arguments) {
    const Machine machine = read_machine();
    const auto configurations = chosen(machine, arguments.operands);
    if (arguments.json) {
        print_json(configurations);
        return ExitCode::success;
    }
    for (const MachineConfiguration* each : configurations) {
        if (each != configurations.front())
            print("\n");
        print_table(*each);
    }
    return ExitCode::success;
}

} // namespace

const Verb show_verb{
    .name = "show",
    .usage = "[CONFIG] [--json]",
    .least_operands = 0,
    .most_operands = 1,
    .summary = "print the settings of this machine",
    .help = R"(
Prints the entries of one configuration, or of all, by group: value name, kind and value. With --json it
prints a state, which apply reads.
)",
    .run = show,
};

} // namespace ctl
