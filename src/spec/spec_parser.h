#pragma once
/// Spec files are line-oriented text with two syntaxes, which share the grammar of subspecs. There are no
/// comments and no escapes: every line is taken as it stands.
///
///     new file                     old file
///       \SOFTWARE\Vendor\Agent       \SOFTWARE\Vendor\Agent       registry key
///       Agent                                                     name of the configuration
///       AgentService                                              service name, may be left out
///       !General                     !General                     start of a group
///       $Agent name                  $Port                        start of a subspec: its title
///       AgentName                    Port                         value name
///       The name of this agent.      The server's port.           help text
///       String                                                    type
///
/// Below the type line some types have further lines. A file whose second line starts with "!" or "$" is an
/// old one. In an old file subspecs may stand outside a group, the type line may be left out, which makes the
/// type "Integer", and the service name follows the subspecs of a group. Blank lines between groups are
/// skipped.
#include <string>

class Configuration;

/// Fills `target`, which must be fresh, from the text of a spec file, which it keeps; `registry_value_name`
/// becomes the name of an old file's configuration. Throws a text (std::string) on the first error.
void parse_spec(Configuration& target, const std::string& registry_value_name, std::string text);
