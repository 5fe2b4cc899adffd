#include "ctl/template/values.h"

namespace ctl {

std::optional<DesiredValue> present_value(const std::string&, const std::string&) { return std::nullopt; }

} // namespace ctl
