#pragma once
/// The report of one machine, which `show --json` printed there. Unlike in a desired state, unknown members
/// are ignored, because a newer tavrinctl may have written them.
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
    /// Nothing if the value is not in the registry, or is not a text.
    std::optional<std::string> text;
    /// For a value that is not a REG_SZ: its type, such as "REG_DWORD", and its octets if it has no text.
    std::string type;
    std::string octets;
    /// Why it could not be read; empty if it could.
    std::string unreadable;
};

struct ReportedConfiguration {
    std::string name;
    std::string key;
    std::string service;
    /// "running", "stopped"; empty if the report does not say.
    std::string service_state;
    std::string start_type;
    bool restart_pending = false;
    std::vector<ReportedValue> values;
};

struct MachineReport {
    /// Empty if the report does not say.
    std::string machine;
    std::string time;
    /// The SHA-256 of each spec file, in order.
    std::vector<std::string> spec_files;
    std::vector<ReportedConfiguration> configurations;
};

/// Throws Failure of the code `invalid` for anything else.
MachineReport read_report(std::string_view octets);

/// The value in the form of the report.
Json json_of(const ReportedValue& value);
/// For people, in one line: the text, with its type unless that is REG_SZ, or "(not set)".
std::string shown(const ReportedValue& value);

} // namespace ctl
