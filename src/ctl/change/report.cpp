#include "ctl/change/report.h"

#include "ctl/change/state_file.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/io/registry_names.h"
#include "ctl/io/visible.h"
#include "ctl/machine/identity.h"

#include <algorithm>

namespace ctl {
namespace {

std::string utf8(const SpecLine& line) { return to_utf8(line.text); }

/// What would change, or what did: a failure may have come between.
bool is_changed(const Change& change, bool what_if) { return what_if ? change.differs : change.is_written; }

Json json_of(const Change& change, bool what_if) {
    Json json = Json::object();
    json.get_ref<Json::object_t&>().reserve(4);
    add_member(json, "before", json_of(change.before));
    add_member(json, "after", json_of_result(change));
    add_member(json, "changed", is_changed(change, what_if));
    return json;
}

/// Also without a value: when a restart was finished that an earlier run left.
bool any_changed(const ConfigurationChanges& changes, bool what_if) {
    return (what_if ? changes.restart_is_pending : changes.is_restarted) ||
           std::any_of(changes.changes.begin(), changes.changes.end(),
                       [&](const Change& each) { return is_changed(each, what_if); });
}

Json json_of(const ConfigurationChanges& changes, bool what_if) {
    Json values = Json::object();
    for (const Change& each : changes.changes)
        add_member(values, to_utf8(each.value_name()), json_of(each, what_if));
    Json json = Json::object();
    add_service(json, *changes.configuration);
    json["restarted"] = changes.is_restarted;
    json["changed"] = any_changed(changes, what_if);
    json["values"] = std::move(values);
    return json;
}

std::string shown_after(const Change& change) {
    const std::optional<std::string>& after = change.after;
    if (change.saved)
        return shown(stored_as(*change.saved));
    if (!after)
        return "(removed)";
    return after->empty() ? "(empty)" : visible(to_utf8(*after));
}

std::string shown_changes(const ConfigurationChanges& changes, bool what_if) {
    std::string lines = visible(to_utf8(changes.configuration->name)) + "\n";
    for (const Change& each : changes.changes) {
        if (is_changed(each, what_if)) {
            lines += "  " + visible(to_utf8(each.value_name())) + ": " + shown(each.before) + " -> " +
                     shown_after(each) + "\n";
        }
    }
    const std::string restart = restart_text(changes);
    return restart.empty() ? lines : lines + "  " + restart + "\n";
}

Json described_value(const MachineConfiguration& configuration, const SpecEntry& entry,
                     const StoredValue& value) {
    Json json = json_of(value);
    if (!json.is_object())
        json = {{"value", json}};
    json["group"] = utf8(configuration.spec.groups[entry.group].name);
    json["title"] = utf8(entry.declaration.title);
    json["kind"] = std::string(entry.declaration.kind->type);
    return json;
}

/// An entry without a value is listed as well.
Json described_action(const MachineConfiguration& configuration, const SpecEntry& entry) {
    return {{"kind", std::string(entry.declaration.kind->type)},
            {"name", utf8(entry.declaration.value_name)},
            {"group", utf8(configuration.spec.groups[entry.group].name)},
            {"title", utf8(entry.declaration.title)}};
}

} // namespace

Json json_of_result(const Change& change) {
    if (change.is_kept)
        return json_of(change.before);
    if (change.saved)
        return json_of(stored_as(*change.saved));
    return change.after ? Json(to_utf8(*change.after)) : Json();
}

std::string restart_text(const ConfigurationChanges& changes) {
    const std::string service = "service " + visible(to_utf8(changes.configuration->service()));
    const bool was_pending = changes.restart_is_pending && !changes.differ();
    if (changes.is_restarted)
        return service + " restarted" + (was_pending ? " (left unfinished by an earlier run)" : "");
    return was_pending ? service + " must be restarted (left unfinished by an earlier run)" : "";
}

std::string report_text(const std::vector<ConfigurationChanges>& all, bool what_if,
                        const std::string& backup) {
    std::string text = what_if ? "what-if: nothing is written\n" : "";
    if (all_in_sync(all))
        return text + "nothing to do: all values match\n";
    if (!backup.empty())
        text += "previous values saved to " + backup + "\n";
    for (const ConfigurationChanges& each : all) {
        if (any_changed(each, what_if) || each.restart_is_pending)
            text += shown_changes(each, what_if);
    }
    return text;
}

Json report_of(const std::vector<ConfigurationChanges>& all, bool what_if, const std::string& backup) {
    Json configurations = Json::object();
    for (const ConfigurationChanges& each : all)
        configurations[to_utf8(each.configuration->name)] = json_of(each, what_if);
    const bool changed =
        std::any_of(all.begin(), all.end(), [&](const auto& each) { return any_changed(each, what_if); });
    std::vector<const MachineConfiguration*> concerned(all.size());
    std::transform(all.begin(), all.end(), concerned.begin(),
                   [](const ConfigurationChanges& each) { return each.configuration; });
    return {{"schema", schema_version},
            {"machine", machine_identity()},
            {"specFiles", spec_files_of(concerned)},
            {"changed", changed},
            {"whatIf", what_if},
            {"backup", backup.empty() ? Json() : Json(backup)},
            {"configurations", std::move(configurations)}};
}

std::vector<StoredValue> stored_values(const MachineConfiguration& configuration) {
    std::vector<StoredValue> values(configuration.spec.entries.size());
    try {
        const MachineKey key(configuration.key(), KEY_QUERY_VALUE);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const SpecEntry& entry = configuration.spec.entries[i];
            if (entry.declaration.has_value())
                values[i] = look_up(key, std::string(entry.declaration.value_name.text));
        }
    } catch (const Failure& failure) {
        if (failure.code != invalid)
            throw;
        say(failure.text, Level::warning);
    }
    return values;
}

Json described(const MachineConfiguration& configuration) {
    const std::vector<StoredValue> stored = stored_values(configuration);
    RegistryNames seen(machine_code_page());
    Json values = Json::object();
    Json actions = Json::array();
    for (std::size_t i = 0; i < stored.size(); ++i) {
        const SpecEntry& entry = configuration.spec.entries[i];
        if (!entry.declaration.has_value()) {
            actions.push_back(described_action(configuration, entry));
        } else if (seen.add(entry.declaration.value_name.text, i + 1) == 0) {
            add_member(values, utf8(entry.declaration.value_name),
                       described_value(configuration, entry, stored[i]));
        }
    }
    Json json{{"key", to_utf8(configuration.key())}};
    add_service(json, configuration);
    json["values"] = std::move(values);
    json["actions"] = std::move(actions);
    return json;
}

} // namespace ctl
