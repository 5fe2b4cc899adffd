#pragma once
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace ctl {

/// The octets of the file at `path` (UTF-8); "-" is the standard input. Nothing when it cannot be read. Of a
/// larger file no more than `limit` octets and one are read.
std::optional<std::string> read_file(const std::string& path,
                                     std::size_t limit = static_cast<std::size_t>(-2));
/// Why the file could not be read: the system's words for what read_file met last.
std::string why_unreadable();
/// Replaces the file at `path`, or with `fresh` makes one that must not exist yet. False when that fails; no
/// half file is left then.
bool write_file(const std::string& path, std::string_view octets, bool fresh = false);

} // namespace ctl
