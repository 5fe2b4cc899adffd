#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace ctl {

/// The SHA-256 of the octets, as 64 hexadecimal digits in lower case. Throws Failure when the system has
/// none.
std::string sha256(std::string_view octets);

/// That of the file at `path` (UTF-8); nothing when it cannot be read.
std::optional<std::string> sha256_of_file(const std::string& path);

/// Two hexadecimal digits in lower case for each octet.
std::string hex_of(std::string_view octets);

} // namespace ctl
