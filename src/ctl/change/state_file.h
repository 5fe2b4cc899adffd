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
/// Only names, values and guards describe the desired state; the rest informs. A value may stand alone in the
/// place of its object. One with a type is for a machine that has just this value.
#include "ctl/io/json_tree.h"

#include <optional>
#include <string>
#include <vector>

namespace ctl {

/// The version of the form; a change that an older reader would take wrong gives another.
inline constexpr int schema_version = 1;

struct WishedValue {
    /// A value name or a title.
    std::string name;
    /// In UTF-8; nothing when the value shall not be there.
    std::optional<std::string> text;
    /// How JSON writes it: a text may be meant for every kind of entry, a number or boolean for its own.
    JsonTree::Kind written = JsonTree::Kind::text;
    /// The registry's type that the value must have already; empty when any text may be written.
    std::string type = {};
    /// Of such a value, in the place of a text.
    std::optional<std::string> octets = {};
};

/// What a state was made for; empty where it does not tell.
struct Guards {
    std::string key;
    std::string service;
    /// Of the spec file.
    std::string sha256;
};

struct WishedConfiguration {
    std::string name;
    /// Below HKEY_LOCAL_MACHINE; empty when the state does not tell.
    std::string key;
    std::vector<WishedValue> values;
    std::string service = {};
    Guards guards = {};
};

using State = std::vector<WishedConfiguration>;

/// Throws Failure of the code `invalid` for what is not of this form.
State read_state(std::string_view octets);
/// The values of one configuration, an object as under "values".
std::vector<WishedValue> read_values(const JsonTree& values);
/// The state in the file at `path`, which the words of a failure begin with.
State read_state_file(const std::string& path);

/// Refuses members that are not among `known`.
void refuse_unknown(const JsonTree& object, const std::string& what,
                    const std::vector<std::string_view>& known);
/// The text of the member; empty when it is not there. Refuses one that is no text.
std::string text_member(const JsonTree& object, std::string_view name);

} // namespace ctl
