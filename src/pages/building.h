#pragma once
/// Builds groups and entries from the text of a spec file.
#include "specfile/spec_text.h"

#include <functional>
#include <string>

class Settings;

/// Receives each error that does not end the building.
using SpecErrorReport = std::function<void(const SpecError&)>;

/// Fills `target`, which must be fresh, from the text of a spec file, which it keeps; `registry_value_name`
/// becomes the name of an old file's configuration. An unknown type is reported to `unknown_type_found`,
/// unless the configuration serves the connection test only. Throws a text (std::string) on every other
/// error, and at the first.
void build_settings(Settings& target, const std::string& registry_value_name, std::string text,
                    const SpecErrorReport& unknown_type_found);
