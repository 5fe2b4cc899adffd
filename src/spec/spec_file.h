#pragma once
#include <optional>
#include <string>

/// The bytes of the file at `path`, which other programs may have open; nothing when it cannot be opened or
/// is a directory.
std::optional<std::string> read_spec_file(const std::string& path);
