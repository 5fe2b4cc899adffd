#pragma once
/// What one machine says of itself: what `show --json` printed there. Unlike in a desired state, members that
/// are not known are passed over, for a newer tavrinctl may have written them.
#include "ctl/io/json.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ctl {

struct ReportedValue {
    std::string name;
    std::string title;
    std::string kind;
    /// Nothing when the value is not in the registry, or not there as a text.
    std::optional<std::string> text;
    /// Of a value that is no REG_SZ: its type, such as "REG_DWORD", and when it has no text, its octets.
    std::string type;
    std::string octets;
    /// Why it could not be read; empty when it could.
    std::string unreadable;
};

struct ReportedConfiguration {
    std::string name;
    std::string key;
    std::string service;
    /// "running", "stopped"; empty when the report does not say.
    std::string service_state;
    std::string start_type;
    bool restart_pending = false;
    std::vector<ReportedValue> values;
};

struct MachineReport {
    /// Empty when the report does not say.
    std::string machine;
    std::string time;
    /// The SHA-256 of each spec file, in order.
    std::vector<std::string> spec_files;
    std::vector<ReportedConfiguration> configurations;
};

/// Throws Failure of the code `invalid` for what is no such report.
MachineReport read_report(std::string_view octets);

/// The value in the form of the report.
Json json_of(const ReportedValue& value);
/// For people, in one line: the text, "(not set)", a text that is no REG_SZ with its type.
std::string shown(const ReportedValue& value);

} // namespace ctl
