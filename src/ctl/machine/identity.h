#pragma once
/// What every report says of the machine that it is about.
#include "ctl/io/json.h"
#include "ctl/machine/machine.h"

#include <ctime>
#include <string>
#include <vector>

namespace ctl {

/// The machine's name, the version of tavrinctl and the time in UTC.
Json machine_identity();
/// Path and SHA-256 of their spec files; null for one that cannot be read any more.
Json spec_files_of(const std::vector<const MachineConfiguration*>& configurations);
/// Adds the service's name, state and start type, and whether its restart is pending.
void add_service(Json& object, const MachineConfiguration& configuration);

/// "2026-01-31T12:00:00Z".
std::string utc_time(std::time_t time);

} // namespace ctl
