#pragma once
#include <optional>
#include <string>

/// The bytes of the file at `path`, which other programs may have open, up to the first one of value 26
/// (0x1A), which ends a text; nothing when the file cannot be opened or is a directory.
std::optional<std::string> read_spec_file(const std::string& path);
