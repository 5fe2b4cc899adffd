#pragma once
/// How text breaks into lines in a multi-line edit control. Internal to the substitute.
#include <cstddef>
#include <string>

namespace substitute {

/// Lines of `text` when broken at line ends and, unless `width` is 0, between words to fit `width` pixels.
int count_lines(const std::string& text, int width);

} // namespace substitute
