#pragma once
/// Where a template's values come from.
#include "ctl/change/state_file.h"
#include "ctl/template/source.h"

namespace ctl {

/// From a state's configuration that is meant for this spec file and was checked against it, as `apply` would
/// store them.
void fill_from_state(TemplateSource& source, const SpecModel& spec, const WishedConfiguration& wished,
                     unsigned code_page);

void fill_from_machine(TemplateSource& source);

} // namespace ctl
