#include "support/spec_text.h"

#include "base/trace.h"
#include "pages/building.h"
#include "support/kinds.h"
#include "support/thrown.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <typeinfo>

namespace {

/// The type line of the first kind whose entries are of this class. The compilers put the length of a class's
/// name in front of it.
std::string kind_of(const BaseEntry& entry) {
    const std::string made = typeid(entry).name();
    for (const PageKind& kind : page_kinds) {
        if (made == std::to_string(std::strlen(kind.entry)) + kind.entry)
            return kind.type;
    }
    return "unknown";
}

std::vector<std::string>& trace_lines() {
    static std::vector<std::string> lines;
    return lines;
}

void listen(const char* format, std::va_list arguments) {
    std::array<char, 512> buffer{};
    std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    trace_lines().emplace_back(buffer.data());
}

} // namespace

std::unique_ptr<Configuration> parse(std::string_view text, bool connection_test_only) {
    auto configuration = std::make_unique<Configuration>(connection_test_only);
    build_settings(*configuration, "From registry", std::string(text), show_spec_error);
    return configuration;
}

std::string parse_failure(std::string_view text, bool connection_test_only) {
    return thrown_text([&] { parse(text, connection_test_only); });
}

std::string describe(const Configuration& configuration) {
    std::string description;
    for (const Group& group : configuration.groups) {
        description += "!" + group.name + "\n";
        for (const OwnedEntry& entry : group.entries) {
            description += kind_of(*entry) + "|" + std::string(entry->title()) + "|" +
                           std::string(entry->help_text()) + "\n";
        }
    }
    return description;
}

TraceLog::TraceLog() {
    trace_lines().clear();
    trace_listener = &listen;
}

TraceLog::~TraceLog() { trace_listener = nullptr; }

const std::vector<std::string>& TraceLog::lines() { return trace_lines(); }
