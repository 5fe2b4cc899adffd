#pragma once
#include "ctl/change/state_file.h"

#include <optional>
#include <string>

namespace ctl {

/// A value below HKEY_LOCAL_MACHINE, as a state would have it; nothing when it is not there, and on a machine
/// without a registry. Key and name are UTF-8.
std::optional<WishedValue> present_value(const std::string& key, const std::string& name);

} // namespace ctl
