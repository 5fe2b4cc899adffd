#include "spec/entry_kinds.h"

#include "error/trace.h"
#include "spec/boolean_entry.h"
#include "spec/configuration.h"
#include "spec/delete_key.h"
#include "spec/directory_selector.h"
#include "spec/file_selector.h"
#include "spec/integer_entry.h"
#include "spec/option_entry.h"
#include "spec/server_list_entry.h"
#include "spec/signal_event.h"
#include "spec/string_entry.h"
#include "store/registry_key.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace {

using Lines = std::vector<std::string>;

/// Every option up to the subspec's end, blank ones included.
Lines read_options(LineReader& lines) {
    Lines options;
    while (!at_subspec_end(lines))
        options.emplace_back(lines.read());
    return options;
}

Lines read_extension(LineReader& lines) {
    return {at_subspec_end(lines) ? std::string() : std::string(lines.read())};
}

/// Four titles, whatever their lines start with.
Lines read_titles(LineReader& lines) {
    Lines titles;
    for (int i = 0; i < 4; ++i)
        titles.emplace_back(lines.read());
    return titles;
}

/// The texts that every entry is made with, after its own first argument.
template <typename Entry, typename First, typename... More>
OwnedEntry entry_of(const Subspec& subspec, First first, More&&... more) {
    return make_entry<Entry>(std::move(first), subspec.title, subspec.help_text, std::forward<More>(more)...);
}

CommonRegKey binding(const Subspec& subspec, const Configuration& configuration) {
    return {HKEY_LOCAL_MACHINE, configuration.registryPath, subspec.value_name,
            !configuration.connectionTestOnly};
}

template <typename Entry> OwnedEntry build_value(const Subspec& subspec, Configuration& configuration) {
    return entry_of<Entry>(subspec, binding(subspec, configuration));
}

OwnedEntry build_options(const Subspec& subspec, Configuration& configuration) {
    return entry_of<OptionEntry>(subspec, binding(subspec, configuration), subspec.more);
}

/// The machine's serial ports, in byte-wise order; none when the registry does not list them.
Lines serial_ports() {
    std::map<std::string, std::string> devices;
    try {
        enumerate_values(devices, HKEY_LOCAL_MACHINE, R"(HARDWARE\DEVICEMAP\SERIALCOMM)");
    } catch (const std::string&) {
        return {};
    }
    Lines ports;
    std::transform(devices.begin(), devices.end(), std::back_inserter(ports),
                   [](const auto& device) { return device.second; });
    std::sort(ports.begin(), ports.end());
    return ports;
}

OwnedEntry build_serial_port(const Subspec& subspec, Configuration& configuration) {
    return entry_of<OptionEntry>(subspec, binding(subspec, configuration), serial_ports());
}

OwnedEntry build_delete_key(const Subspec& subspec, Configuration& configuration) {
    std::string path = configuration.registryPath + "\\" + std::string(subspec.value_name);
    return entry_of<DeleteKey>(subspec, DeleteRegKey(HKEY_LOCAL_MACHINE, std::move(path)));
}

OwnedEntry build_signal(const Subspec& subspec, Configuration&) {
    return entry_of<SignalEvent>(subspec, std::string(subspec.value_name));
}

OwnedEntry build_file(const Subspec& subspec, Configuration& configuration) {
    return entry_of<FileSelector>(subspec, binding(subspec, configuration), subspec.more.front());
}

OwnedEntry build_server_list(const Subspec& subspec, Configuration& configuration) {
    return entry_of<ServerListEntry>(subspec, binding(subspec, configuration), configuration);
}

OwnedEntry set_up_connection_test(const Subspec& subspec, Configuration& configuration) {
    configuration.offersConnectionTest = true;
    configuration.agent_name_title = subspec.more[0];
    configuration.agent_domain_title = subspec.more[1];
    configuration.server_list_title = subspec.more[2];
    configuration.default_port_title = subspec.more[3];
    trace("Found a ConnectionTest1\n");
    trace("Found agent_name_title: %s\n", configuration.agent_name_title.c_str());
    trace("Found agent_domain_title: %s\n", configuration.agent_domain_title.c_str());
    trace("Found server_list_title: %s\n", configuration.server_list_title.c_str());
    trace("Found default_port_title: %s\n", configuration.default_port_title.c_str());
    return {};
}

constexpr EntryKind entry_kinds[] = {
    {"String", nullptr, &build_value<StringEntry>, false},
    {"string", nullptr, &build_value<StringEntry>, false},
    {"Integer", nullptr, &build_value<IntegerEntry>, false},
    {"Boolean", nullptr, &build_value<BooleanEntry>, false},
    {"Options", &read_options, &build_options, false},
    {"COM", nullptr, &build_serial_port, false},
    {"RemoveKey", nullptr, &build_delete_key, false},
    {"SignalEvent", nullptr, &build_signal, false},
    {"Directory", nullptr, &build_value<DirectorySelector>, false},
    {"File", &read_extension, &build_file, false},
    {"ServerList", nullptr, &build_server_list, true},
    {"ConnectionTest", &read_titles, &set_up_connection_test, true},
};

} // namespace

const EntryKind* find_entry_kind(std::string_view type) {
    const auto* const found = std::find_if(std::begin(entry_kinds), std::end(entry_kinds),
                                           [&](const EntryKind& kind) { return kind.type == type; });
    return found == std::end(entry_kinds) ? nullptr : found;
}

bool at_subspec_end(const LineReader& lines) {
    return lines.at_end() || lines.next_starts_with('$') || lines.next_starts_with('!');
}
