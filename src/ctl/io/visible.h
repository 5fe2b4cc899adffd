#pragma once
#include <string>
#include <string_view>

namespace ctl {

/// The text with its control characters as C escapes, so that a hostile one changes neither lines nor a
/// terminal's state.
std::string visible(std::string_view text);

} // namespace ctl
