#include "ctl/io/sha256.h"

#include "ctl/io/files.h"

namespace ctl {

std::optional<std::string> sha256_of_file(const std::string& path) {
    const auto octets = read_file(path);
    return octets ? std::optional(sha256(*octets)) : std::nullopt;
}

std::string hex_of(std::string_view octets) {
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(2 * octets.size());
    for (const char each : octets) {
        const auto octet = static_cast<unsigned char>(each);
        text += digits[octet >> 4];
        text += digits[octet & 0xF];
    }
    return text;
}

} // namespace ctl
