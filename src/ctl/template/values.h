#pragma once
/// Where a template's values come from.
#include "ctl/change/state_file.h"
#include "ctl/template/source.h"

namespace ctl {

/// Takes the values from a state's configuration, which was checked against this spec file, as `apply` would
/// store them.
void fill_from_state(TemplateSource& source, const SpecModel& spec, const DesiredConfiguration& desired,
                     unsigned code_page);

/// Takes the values from this machine.
void fill_from_machine(TemplateSource& source);

/// A value below HKEY_LOCAL_MACHINE, as a state would have it; nothing if it does not exist, or on a machine
/// without a registry. The key and the name are UTF-8.
std::optional<DesiredValue> present_value(const std::string& key, const std::string& name);

} // namespace ctl
