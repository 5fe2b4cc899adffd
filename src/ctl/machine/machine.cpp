#include "ctl/machine/machine.h"

#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/io/registry_names.h"
#include "ctl/io/visible.h"
#include "ctl/machine/stored_value.h"
#include "store/registry_key.h"

#include <algorithm>
#include <map>

namespace ctl {
namespace {

constexpr const char* list_of_spec_files = "SOFTWARE\\Tavrin\\TRConfig";

std::string at_line(const std::string& path, const SpecError& error) {
    return to_utf8(path) + ":" + std::to_string(error.line) + ": " + visible(to_utf8(error.text));
}

void tell_or_refuse(const std::string& path, const SpecModel& spec) {
    if (!spec.errors.empty())
        throw Failure{invalid, at_line(path, spec.errors.front())};
    for (const SpecError& each : spec.unknown_types)
        say(at_line(path, each), Level::warning);
}

/// What the window does not say: it skips the file.
std::string why_not_opened(const std::string& value_name) {
    const MachineKey list(list_of_spec_files, KEY_QUERY_VALUE);
    return look_up(list, value_name).type == REG_EXPAND_SZ ? "; its registry value is a REG_EXPAND_SZ, whose "
                                                             "names such as %ProgramFiles% are not replaced"
                                                           : "";
}

void add_configuration(Machine& machine, const std::string& value_name, const std::string& path) {
    auto octets = read_spec_file(path);
    if (!octets) {
        say(to_utf8(path) + ": the spec file cannot be opened" + why_not_opened(value_name), Level::warning);
        return;
    }
    SpecModel spec(std::move(*octets));
    tell_or_refuse(path, spec);
    std::string name = spec.is_old ? value_name : std::string(spec.name.text);
    machine.push_back({std::move(name), path, std::move(spec)});
}

/// Of those with one name the first stays.
void order_by_name(Machine& machine) {
    std::stable_sort(machine.begin(), machine.end(),
                     [](const auto& one, const auto& other) { return one.name < other.name; });
    const auto same = std::unique(machine.begin(), machine.end(),
                                  [](const auto& one, const auto& other) { return one.name == other.name; });
    machine.erase(same, machine.end());
}

} // namespace

Machine read_machine() {
    const MachineKey reachable(list_of_spec_files, KEY_QUERY_VALUE,
                               "no configuration is registered on this machine "
                               "(HKLM\\SOFTWARE\\Tavrin\\TRConfig does not exist)");
    std::map<std::string, std::string> spec_files;
    enumerate_values(spec_files, HKEY_LOCAL_MACHINE, list_of_spec_files);
    Machine machine;
    for (const auto& [value_name, path] : spec_files)
        add_configuration(machine, value_name, path);
    order_by_name(machine);
    return machine;
}

const MachineConfiguration& configuration_named(const Machine& machine, const std::string& name) {
    const std::optional<std::string> wanted = from_utf8(name);
    std::vector<const MachineConfiguration*> alike;
    for (const MachineConfiguration& each : machine) {
        if (each.name == wanted)
            return each;
        if (wanted && is_same_registry_name(to_utf8(each.name), name))
            alike.push_back(&each);
    }
    if (alike.size() != 1)
        throw Failure{invalid, "there is no configuration \"" + visible(name) + "\""};
    return *alike.front();
}

std::vector<const MachineConfiguration*> chosen(const Machine& machine,
                                                const std::vector<std::string>& names) {
    std::vector<const MachineConfiguration*> all;
    if (names.empty()) {
        for (const MachineConfiguration& each : machine)
            all.push_back(&each);
    } else {
        all.push_back(&configuration_named(machine, names.front()));
    }
    return all;
}

} // namespace ctl
