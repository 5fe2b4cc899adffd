#pragma once
/// What a check finds, in the order of the file's lines.
#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ctl {

/// The text in quotation marks, as findings name what they are about.
inline std::string quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

enum class Severity {
    error,   ///< The window refuses it, at once or when it is used.
    warning, ///< The window's user stumbles over it.
};

struct Finding {
    std::size_t line;
    Severity severity;
    /// In the octets of the file.
    std::string text;
};

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

} // namespace ctl
