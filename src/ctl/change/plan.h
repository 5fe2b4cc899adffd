#pragma once
/// Compares the desired state with the current one: every value is checked before anything is written, and
/// values that match are left alone.
#include "ctl/change/state_file.h"
#include "ctl/machine/exact_value.h"
#include "ctl/machine/machine.h"
#include "ctl/machine/stored_value.h"

#include <optional>
#include <string>
#include <vector>

namespace ctl {

struct Change {
    const Declaration* declaration;
    StoredValue before;
    /// As it shall be stored, in the machine's code page; nothing when the value shall not be there.
    std::optional<std::string> after;
    bool differs = false;
    /// Stays as it is stored, of whatever type; `after` has no part in it.
    bool is_kept = false;
    bool is_written = false;
    /// Brought back from a backup as it was, of whatever type, in place of `after`.
    std::optional<ExactValue> saved = std::nullopt;

    std::string value_name() const { return std::string(declaration->value_name.text); }
};

struct ConfigurationChanges {
    const MachineConfiguration* configuration;
    std::vector<Change> changes;
    bool is_restarted = false;
    /// An earlier run stopped the service and did not get it running again.
    bool restart_is_pending = false;

    bool differ() const;
};

/// In the order of the state, and of the spec file within a configuration. Throws Failure of the code
/// `invalid` with every problem in its words.
std::vector<ConfigurationChanges> plan_changes(const Machine& machine, const State& state);

/// Whether nothing is to be done: all values match, and no restart is pending.
bool is_in_sync(const ConfigurationChanges& changes);
bool all_in_sync(const std::vector<ConfigurationChanges>& all);
bool any_differ(const std::vector<ConfigurationChanges>& all);

} // namespace ctl
