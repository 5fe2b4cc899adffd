#pragma once
#include <string_view>

namespace ctl {

/// Whether both are the same but for the case of ASCII letters, as names in the registry are.
bool same_name(std::string_view one, std::string_view other);

} // namespace ctl
