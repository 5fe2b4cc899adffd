#include "support/spec_text.h"

#include "error/trace.h"
#include "spec/actions.h"
#include "spec/building.h"
#include "spec/option_entry.h"
#include "spec/selectors.h"
#include "spec/server_list_entry.h"
#include "spec/value_entries.h"
#include "support/thrown.h"

#include <array>
#include <cstdio>

namespace {

template <typename Kind> bool is(const BaseEntry& entry) {
    return dynamic_cast<const Kind*>(&entry) != nullptr;
}

const char* kind_of(const BaseEntry& entry) {
    if (is<StringEntry>(entry))
        return "String";
    if (is<IntegerEntry>(entry))
        return "Integer";
    if (is<BooleanEntry>(entry))
        return "Boolean";
    if (is<DeleteKey>(entry))
        return "RemoveKey";
    if (is<OptionEntry>(entry))
        return "Options";
    if (is<DirectorySelector>(entry))
        return "Directory";
    if (is<FileSelector>(entry))
        return "File";
    if (is<SignalEvent>(entry))
        return "SignalEvent";
    return is<ServerListEntry>(entry) ? "ServerList" : "unknown";
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
            description += std::string(kind_of(*entry)) + "|" + std::string(entry->title()) + "|" +
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
