#pragma once
#include <optional>
#include <string>

namespace ctl {

/// The text of a value below HKEY_LOCAL_MACHINE, in UTF-8; nothing when it is not there, and on a machine
/// without a registry.
std::optional<std::string> present_value(const std::string& key, const std::string& name);

} // namespace ctl
