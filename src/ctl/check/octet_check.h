#pragma once
/// What is wrong with the octets of a spec file before they are read as lines: marks of other encodings,
/// octets that end a text, and lines without an end.
#include "ctl/check/spec_check.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace ctl {

/// What a check finds in a file.
class Findings {
public:
    void error(std::size_t line, std::string text) { add(line, Severity::error, std::move(text)); }
    void warn(std::size_t line, std::string text) { add(line, Severity::warning, std::move(text)); }

    /// What stands nowhere is told of the first line.
    void add(std::size_t line, Severity severity, std::string text) {
        all_.push_back({std::max<std::size_t>(line, 1), severity, std::move(text)});
    }

    /// In the order of the lines; of one line in the order in which they were found. Leaves nothing behind.
    std::vector<Finding> in_order() {
        std::stable_sort(all_.begin(), all_.end(),
                         [](const Finding& one, const Finding& other) { return one.line < other.line; });
        return std::exchange(all_, {});
    }

private:
    std::vector<Finding> all_;
};

/// The text that is read from `octets`, without a mark before it, so that the rest is judged as it is meant;
/// nothing when nothing can be read. `is_utf8`: the file is read in that code page.
std::optional<std::string_view> check_octets(std::string_view octets, bool is_utf8, Findings& findings);

} // namespace ctl
