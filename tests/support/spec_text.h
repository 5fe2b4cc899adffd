#pragma once
/// Spec files as texts, and configurations as texts that a test can compare.
#include "pages/configuration.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// The result of parsing `text`; old files are called "From registry".
std::unique_ptr<Configuration> parse(std::string_view text, bool connection_test_only = false);
/// The text that parsing `text` throws.
std::string parse_failure(std::string_view text, bool connection_test_only = false);

/// One line "!name" per group and one line "kind|title|help" per entry.
std::string describe(const Configuration& configuration);

/// Collects the trace calls made while it lives.
class TraceLog {
public:
    TraceLog();
    TraceLog(const TraceLog&) = delete;
    TraceLog& operator=(const TraceLog&) = delete;
    ~TraceLog();
    static const std::vector<std::string>& lines();
};
