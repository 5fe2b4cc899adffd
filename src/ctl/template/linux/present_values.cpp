#include "ctl/template/present_values.h"

namespace ctl {

std::optional<WishedValue> present_value(const std::string&, const std::string&) { return std::nullopt; }

} // namespace ctl
