#pragma once
/// The state file, in the form that `show --json` prints:
///
///     { "schema": 1,
///       "configurations": {
///         "Tavrin Agent": {
///           "service": "TavrinAgent", "key": "SOFTWARE\\Tavrin\\Agent",
///           "values": {
///             "Port": { "value": "5000", "group": "Servers", "title": "Port", "kind": "Integer" },
///             "Token": { "type": "REG_BINARY", "octets": "00ff", ... },
///             "Compress": "true" },
///           "guards": { "key": "SOFTWARE\\Tavrin\\Agent", "service": "TavrinAgent", "sha256": "..." } } } }
///
/// Only names, values and guards describe the desired state; the rest is information. A value may replace its
/// object. One with a type is accepted only on a machine that has this value already.
#include "ctl/io/json.h"

#include <optional>
#include <string>
#include <vector>

namespace ctl {

/// The version of the form. It changes when an older reader would misunderstand the new form.
inline constexpr int schema_version = 1;

struct DesiredValue {
    /// A value name or a title.
    std::string name;
    /// In UTF-8; nothing if the value is to be removed.
    std::optional<std::string> text;
    /// How JSON writes it: a text fits every kind of entry, a number or boolean only its own.
    JsonTree::Kind written = JsonTree::Kind::text;
    /// The registry type that the value must have already; empty if a text may be written.
    std::string type = {};
    /// The octets of such a value, instead of a text.
    std::optional<std::string> octets = {};
};

/// The configuration for which a state was made; its members are empty if the state does not name them.
struct Guards {
    std::string key;
    std::string service;
    /// The SHA-256 of the spec file.
    std::string sha256;
};

struct DesiredConfiguration {
    std::string name;
    /// Below HKEY_LOCAL_MACHINE; empty if the state does not say.
    std::string key;
    std::vector<DesiredValue> values;
    std::string service = {};
    Guards guards = {};
};

using State = std::vector<DesiredConfiguration>;

/// Throws Failure of the code `invalid` for anything else.
State read_state(std::string_view octets);
/// The values of one configuration, an object as under "values".
std::vector<DesiredValue> read_values(const JsonTree& values);
/// The state in the file at `path`. The text of a failure begins with the path.
State read_state_file(const std::string& path);

/// Refuses members that are not among `known`.
void refuse_unknown(const JsonTree& object, const std::string& what,
                    const std::vector<std::string_view>& known);
/// The text of the member; empty if there is none. Refuses a member of another kind.
std::string text_member(const JsonTree& object, std::string_view name);

} // namespace ctl
