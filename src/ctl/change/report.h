#pragma once
/// The report that set, apply and restore print.
#include "ctl/change/change.h"

namespace ctl {

/// For programs: what happened to each value, or with `what_if` would happen, in the form of the state file.
Json report_json(const ChangeResult& result, bool what_if);
/// For people: a line for each value that changed or would change.
std::string report_text(const ChangeResult& result, bool what_if);

/// The outcome of the service's restart; empty if it was neither restarted nor has to be.
std::string restart_text(const ConfigurationPlan& plan);

/// The value after the change, as json_of shows it while it is stored.
Json json_of_result(const Change& change);

} // namespace ctl
