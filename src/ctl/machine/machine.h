#pragma once
/// The configurations that this machine's registry lists, and the parts that all reports share.
#include "ctl/machine/registry.h"
#include "specfile/spec_model.h"

#include <string>
#include <vector>

namespace ctl {

/// Texts are in the machine's code page.
struct MachineConfiguration {
    std::string name;
    /// The path of its spec file.
    std::string path;
    SpecModel spec;

    std::string key() const { return std::string(spec.registry_path.text); }
    std::string service() const { return std::string(spec.service_name.text); }
};

using Machine = std::vector<MachineConfiguration>;
using Configurations = std::vector<const MachineConfiguration*>;

/// All configurations, by name. Warns of problems that keep the window from making an entry or a
/// configuration. Throws Failure for problems that keep the window from starting.
Machine read_machine();

/// The configuration of this name (UTF-8): in the same letter case, or in any if only one matches. Throws
/// Failure of the code `invalid` if there is none.
const MachineConfiguration& configuration_named(const Machine& machine, const std::string& name);

/// The one configuration that the command line names, or all if it names none.
Configurations chosen(const Machine& machine, const std::vector<std::string>& names);

/// The first entry with this title, as the window looks it up; null if there is none.
const Declaration* find_titled(const MachineConfiguration& configuration, std::string_view title);
/// The value of that entry. Throws Failure of the code `invalid` if there is no such entry or it has no
/// value.
std::string value_titled(const MachineConfiguration& configuration, std::string_view title);
/// That value as a port.
std::uint16_t port_titled(const MachineConfiguration& configuration, std::string_view title);

/// The values of a configuration in the order of its spec file. Warns if its key does not exist; then there
/// are no values.
std::vector<StoredValue> stored_values(const MachineConfiguration& configuration);

/// The machine's name, the version of tavrinctl and the time in UTC.
Json machine_identity();
/// Paths and SHA-256 of the spec files; null for a file that can no longer be read.
Json spec_files_of(const Configurations& configurations);
/// Adds the service's name, state and start type, and whether its restart is pending.
void add_service(Json& object, const MachineConfiguration& configuration);
/// A configuration with all its entries and their values.
Json json_of(const MachineConfiguration& configuration);

} // namespace ctl
