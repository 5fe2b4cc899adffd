#pragma once
/// What set, apply and show print, in the form of the state file: configurations by name, values by value
/// name.
#include "ctl/change/plan.h"
#include "ctl/io/json.h"

#include <optional>
#include <string>

namespace ctl {

/// What became of each value, or with `what_if` would become. `backup` is empty when none was needed.
Json report_of(const std::vector<ConfigurationChanges>& all, bool what_if, const std::string& backup);

/// What became of the restart of the service; empty when nothing did.
std::string restart_text(const ConfigurationChanges& changes);

/// The same for people: a line for each value that changed or would change.
std::string report_text(const std::vector<ConfigurationChanges>& all, bool what_if,
                        const std::string& backup);

/// The value after the change, in the form of json_of for what is stored.
Json json_of_result(const Change& change);

/// Of one configuration, all entries with their values.
Json described(const MachineConfiguration& configuration);

/// The values of a configuration in the spec file's order. Those of a key that does not exist are not there,
/// which is told on the standard error stream.
std::vector<StoredValue> stored_values(const MachineConfiguration& configuration);

} // namespace ctl
