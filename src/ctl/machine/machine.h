#pragma once
/// The configurations of this machine: those that the registry lists, as the window finds them.
#include "specfile/spec_model.h"

#include <string>
#include <vector>

namespace ctl {

/// Texts are in the machine's code page.
struct MachineConfiguration {
    std::string name;
    /// Where its spec file is.
    std::string path;
    SpecModel spec;

    std::string key() const { return std::string(spec.registry_path.text); }
    std::string service() const { return std::string(spec.service_name.text); }
};

using Machine = std::vector<MachineConfiguration>;

/// All configurations, by name. What keeps the window from making an entry, or a configuration, is told on
/// the standard error stream; what keeps it from starting is thrown as Failure.
Machine read_machine();

/// The configuration of this name (UTF-8), in its own letter case or, when only one is so called, in any.
/// Throws Failure of the code `invalid` when there is none.
const MachineConfiguration& configuration_named(const Machine& machine, const std::string& name);

/// That one alone, or all when the command line names none.
std::vector<const MachineConfiguration*> chosen(const Machine& machine,
                                                const std::vector<std::string>& names);

} // namespace ctl
