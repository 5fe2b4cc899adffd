#pragma once
/// The findings of a check, and the forms in which they are printed, for people and for services that show
/// findings beside the changed lines.
#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ctl {

/// The text in quotation marks, as findings quote names.
inline std::string quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

enum class Severity {
    error,   ///< The window refuses it, at once or when it is used.
    warning, ///< It causes trouble for the window's users.
};

struct Finding {
    std::size_t line;
    Severity severity;
    /// In the code page of the file.
    std::string text;
};

class Findings {
public:
    void error(std::size_t line, std::string text) { add(line, Severity::error, std::move(text)); }
    void warn(std::size_t line, std::string text) { add(line, Severity::warning, std::move(text)); }

    /// A finding without a line is reported for the first line.
    void add(std::size_t line, Severity severity, std::string text) {
        all_.push_back({std::max<std::size_t>(line, 1), severity, std::move(text)});
    }

    /// Takes all findings, by line and then in the order in which they were found.
    std::vector<Finding> in_order() {
        std::stable_sort(all_.begin(), all_.end(),
                         [](const Finding& one, const Finding& other) { return one.line < other.line; });
        return std::exchange(all_, {});
    }

private:
    std::vector<Finding> all_;
};

struct CheckedFile {
    std::string path;
    /// Their texts are UTF-8 here.
    std::vector<Finding> findings;
};

using CheckedFiles = std::vector<CheckedFile>;

bool has_errors(const CheckedFiles& files);

/// Everything that is printed; `format` is text, json, sarif or github.
std::string report_findings(const CheckedFiles& files, const std::string& format);

} // namespace ctl
