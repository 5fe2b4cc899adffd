#pragma once
/// What is wrong with the octets of a spec file before they are read as lines: marks of other encodings,
/// octets that end a text, and lines without an end.
#include "ctl/check/findings.h"

#include <optional>
#include <string_view>

namespace ctl {

/// The text that is read from `octets`, without a mark before it, so that the rest is judged as it is meant;
/// nothing when nothing can be read. `is_utf8`: the file is read in that code page.
std::optional<std::string_view> check_octets(std::string_view octets, bool is_utf8, Findings& findings);

} // namespace ctl
