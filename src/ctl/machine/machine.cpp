#include "ctl/machine/machine.h"

#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/io/printable.h"
#include "ctl/io/registry_names.h"
#include "ctl/io/system.h"
#include "ctl/machine/service.h"

#include <algorithm>
#include <ctime>
#include <map>

namespace ctl {
namespace {

std::string at_line(const std::string& path, const SpecError& error) {
    return to_utf8(path) + ":" + std::to_string(error.line) + ": " + printable(to_utf8(error.text));
}

/// The window skips the file without a message.
std::string why_not_opened(const std::string& value_name) {
    const LocalKey list(spec_file_list, KEY_QUERY_VALUE);
    return read_value(list, value_name).type == REG_EXPAND_SZ
               ? "; its registry value is a REG_EXPAND_SZ, whose names such as %ProgramFiles% are not "
                 "replaced"
               : "";
}

void add_configuration(std::map<std::string, MachineConfiguration>& by_name, const std::string& value_name,
                       const std::string& path) {
    auto octets = read_spec_file(path);
    if (!octets) {
        return say(to_utf8(path) + ": the spec file cannot be opened" + why_not_opened(value_name),
                   Level::warning);
    }
    SpecModel spec(std::move(*octets));
    if (!spec.errors.empty())
        throw Failure{ExitCode::invalid, at_line(path, spec.errors.front())};
    for (const SpecError& each : spec.unknown_types)
        say(at_line(path, each), Level::warning);
    std::string name = spec.is_old ? value_name : std::string(spec.name.text);
    by_name.try_emplace(name, MachineConfiguration{name, path, std::move(spec)});
}

Json or_null(const std::string& text) { return text.empty() ? Json() : Json(text); }

std::string utf8(const SpecLine& line) { return to_utf8(line.text); }

std::string group_of(const MachineConfiguration& configuration, const SpecEntry& entry) {
    return utf8(configuration.spec.groups[entry.group].name);
}

Json json_of(const MachineConfiguration& configuration, const SpecEntry& entry, const StoredValue& value) {
    Json json = json_of(value);
    if (!json.is_object())
        json = {{"value", json}};
    json["group"] = group_of(configuration, entry);
    json["title"] = utf8(entry.declaration.title);
    json["kind"] = std::string(entry.declaration.kind->type);
    return json;
}

/// Entries without a value are listed as well.
Json json_of_action(const MachineConfiguration& configuration, const SpecEntry& entry) {
    return {{"kind", std::string(entry.declaration.kind->type)},
            {"name", utf8(entry.declaration.value_name)},
            {"group", group_of(configuration, entry)},
            {"title", utf8(entry.declaration.title)}};
}

} // namespace

Machine read_machine() {
    // A machine without the key gets a clearer message than the window's.
    const LocalKey reachable(spec_file_list, KEY_QUERY_VALUE,
                             "no configuration is registered on this machine "
                             "(HKLM\\SOFTWARE\\Tavrin\\TRConfig does not exist)");
    std::map<std::string, MachineConfiguration> by_name;
    for (const auto& [value_name, path] : listed_spec_files())
        add_configuration(by_name, value_name, path);
    Machine machine;
    for (auto& [name, configuration] : by_name)
        machine.push_back(std::move(configuration));
    return machine;
}

const MachineConfiguration& configuration_named(const Machine& machine, const std::string& name) {
    const std::optional<std::string> wanted = from_utf8(name);
    Configurations alike;
    for (const MachineConfiguration& each : machine) {
        if (each.name == wanted)
            return each;
        if (wanted && is_same_registry_name(to_utf8(each.name), name))
            alike.push_back(&each);
    }
    if (alike.size() != 1)
        throw Failure{ExitCode::invalid, "there is no configuration \"" + printable(name) + "\""};
    return *alike.front();
}

Configurations chosen(const Machine& machine, const std::vector<std::string>& names) {
    if (!names.empty())
        return {&configuration_named(machine, names.front())};
    Configurations all;
    for (const MachineConfiguration& each : machine)
        all.push_back(&each);
    return all;
}

const Declaration* find_titled(const MachineConfiguration& configuration, std::string_view title) {
    const std::vector<SpecEntry>& entries = configuration.spec.entries;
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const SpecEntry& each) {
        return each.declaration.title.text == title;
    });
    return found == entries.end() ? nullptr : &found->declaration;
}

std::string value_titled(const MachineConfiguration& configuration, std::string_view title) {
    const LocalKey key(configuration.key(), KEY_QUERY_VALUE);
    const Declaration* const found = find_titled(configuration, title);
    if (found == nullptr)
        throw Failure{ExitCode::invalid, to_utf8(missing_title(title))};
    if (!found->has_value())
        throw Failure{ExitCode::invalid, title_without_value};
    return read_value(key, std::string(found->value_name.text)).text;
}

std::uint16_t port_titled(const MachineConfiguration& configuration, std::string_view title) {
    const std::string value = value_titled(configuration, title);
    try {
        return static_cast<std::uint16_t>(integer_found(value));
    } catch (const std::string& problem) {
        throw Failure{ExitCode::invalid, to_utf8(problem)};
    }
}

std::vector<StoredValue> stored_values(const MachineConfiguration& configuration) {
    std::vector<StoredValue> values(configuration.spec.entries.size());
    try {
        const LocalKey key(configuration.key(), KEY_QUERY_VALUE);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const Declaration& declaration = configuration.spec.entries[i].declaration;
            if (declaration.has_value())
                values[i] = read_value(key, std::string(declaration.value_name.text));
        }
    } catch (const Failure& failure) {
        if (failure.code != ExitCode::invalid)
            throw;
        say(failure.text, Level::warning);
    }
    return values;
}

Json machine_identity() {
    const std::time_t now = std::time(nullptr);
    char time[32];
    std::strftime(time, sizeof time, "%Y-%m-%dT%H:%M:%SZ", std::gmtime(&now));
    return {{"name", machine_name()}, {"tavrinctl", TAVRIN_VERSION}, {"time", time}};
}

Json spec_files_of(const Configurations& configurations) {
    Json files = Json::array();
    for (const MachineConfiguration* each : configurations) {
        const std::string path = to_utf8(each->path);
        files.push_back({{"path", path}, {"sha256", or_null(sha256_of_file(path).value_or(""))}});
    }
    return files;
}

void add_service(Json& object, const MachineConfiguration& configuration) {
    const std::string service = configuration.service();
    const ServiceInfo info = service.empty() ? ServiceInfo() : service_info(service);
    object["service"] = to_utf8(service);
    object["serviceState"] = or_null(info.state);
    object["startType"] = or_null(info.start_type);
    object["restartPending"] = restart_is_pending(service);
}

Json json_of(const MachineConfiguration& configuration) {
    const std::vector<StoredValue> stored = stored_values(configuration);
    RegistryNames seen(machine_code_page());
    Json values = Json::object();
    Json actions = Json::array();
    for (std::size_t i = 0; i < stored.size(); ++i) {
        const SpecEntry& entry = configuration.spec.entries[i];
        if (!entry.declaration.has_value()) {
            actions.push_back(json_of_action(configuration, entry));
        } else if (seen.add(entry.declaration.value_name.text, i + 1) == 0) {
            add_member(values, utf8(entry.declaration.value_name), json_of(configuration, entry, stored[i]));
        }
    }
    Json json{{"key", to_utf8(configuration.key())}};
    add_service(json, configuration);
    json["values"] = std::move(values);
    json["actions"] = std::move(actions);
    return json;
}

} // namespace ctl
