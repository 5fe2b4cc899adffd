#include "ctl/change/restore.h"

#include "ctl/change/backup.h"
#include "ctl/change/journal.h"
#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/registry_names.h"
#include "ctl/io/visible.h"
#include "ctl/machine/data_folder.h"

#include <algorithm>

namespace ctl {
namespace {

/// Null when the configuration has no such value.
const Declaration* declaration_of(const MachineConfiguration& configuration, const SavedValue& saved) {
    if (!is_same_registry_name(to_utf8(configuration.key()), saved.key))
        return nullptr;
    for (const SpecEntry& each : configuration.spec.entries) {
        if (each.declaration.has_value() &&
            is_same_registry_name(to_utf8(each.declaration.value_name.text), saved.name))
            return &each.declaration;
    }
    return nullptr;
}

ConfigurationChanges& changes_of(const MachineConfiguration& configuration,
                                 std::vector<ConfigurationChanges>& all) {
    const auto found = std::find_if(all.begin(), all.end(), [&](const ConfigurationChanges& each) {
        return each.configuration == &configuration;
    });
    if (found != all.end())
        return *found;
    return all.emplace_back(
        ConfigurationChanges{.configuration = &configuration,
                             .changes = {},
                             .restart_is_pending = restart_is_pending(configuration.service())});
}

bool is_same(const std::optional<ExactValue>& one, const std::optional<ExactValue>& other) {
    return one.has_value() == other.has_value() &&
           (!one || (one->type == other->type && one->octets == other->octets));
}

Change change_to(const SavedValue& saved, const MachineConfiguration& configuration,
                 const Declaration& declaration) {
    const MachineKey key(configuration.key(), KEY_QUERY_VALUE);
    const std::string name(declaration.value_name.text);
    Change change{&declaration, look_up(key, name), std::nullopt};
    change.saved = saved.value;
    change.differs = !is_same(read_exactly(key, name), saved.value);
    return change;
}

/// The first of several configurations that share a key and a value stands for all.
void plan_one(const Machine& machine, const SavedValue& saved, std::vector<ConfigurationChanges>& all) {
    for (const MachineConfiguration& each : machine) {
        if (const Declaration* const declaration = declaration_of(each, saved)) {
            changes_of(each, all).changes.push_back(change_to(saved, each, *declaration));
            return;
        }
    }
    throw Failure{invalid, "nothing was written: no configuration has the value \"" + visible(saved.name) +
                               "\" of HKEY_LOCAL_MACHINE\\" + visible(saved.key)};
}

} // namespace

std::vector<ConfigurationChanges> plan_restore(const Machine& machine, const std::vector<SavedValue>& saved) {
    std::vector<ConfigurationChanges> all;
    for (const SavedValue& each : saved)
        plan_one(machine, each, all);
    return all;
}

std::string newest_backup() {
    const std::vector<std::string> backups = backups_in(backup_folder());
    if (backups.empty())
        throw Failure{failed, "there is no backup in " + backup_folder()};
    return backups.back();
}

} // namespace ctl
