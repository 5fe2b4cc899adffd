#pragma once
/// Compares the desired state with the current one. Every value is checked before anything is written, and
/// values that match are left alone.
#include "ctl/change/state_file.h"
#include "ctl/machine/machine.h"

#include <optional>
#include <string>
#include <vector>

namespace ctl {

/// The planned change of one value.
struct Change {
    const Declaration* declaration;
    StoredValue before;
    /// The text to store, in the machine's code page; nothing if the value is to be removed.
    std::optional<std::string> after;
    /// Whether the current value differs from the desired one.
    bool is_needed = false;
    /// The value stays as it is stored, whatever its type; `after` is not used.
    bool is_kept = false;
    bool is_written = false;
    /// A value of a backup, whatever its type; used instead of `after`.
    std::optional<RegistryValue> saved = std::nullopt;

    std::string value_name() const { return std::string(declaration->value_name.text); }
};

struct ConfigurationPlan {
    const MachineConfiguration* configuration;
    std::vector<Change> changes;
    bool is_restarted = false;
    /// An earlier run stopped the service and did not restart it.
    bool restart_is_pending = false;

    bool needs_writing() const;
    /// Whether there is nothing to do: all values match, and no restart is pending.
    bool is_in_sync() const { return !needs_writing() && !restart_is_pending; }
};

using Plan = std::vector<ConfigurationPlan>;

bool needs_writing(const Plan& plan);
bool is_in_sync(const Plan& plan);

/// The plan in the order of the state, and of the spec file within a configuration. Throws Failure of the
/// code `invalid` that lists every problem.
Plan plan_state(const Machine& machine, const State& state);

/// The plan that brings saved values back, whatever their types. Throws Failure of the code `invalid` for a
/// value that no configuration of this machine has.
Plan plan_restore(const Machine& machine, const std::vector<SavedValue>& saved);

} // namespace ctl
