#include "ctl/machine/present_values.h"

namespace ctl {

std::optional<std::string> present_value(const std::string&, const std::string&) { return std::nullopt; }

} // namespace ctl
