#include "ctl/check/octet_check.h"

#include "specfile/spec_text.h"

#include <cstdint>

namespace ctl {
namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

std::size_t line_of(std::string_view octets, std::size_t place) {
    return 1 + static_cast<std::size_t>(
                   std::count(octets.begin(), octets.begin() + static_cast<std::ptrdiff_t>(place), '\n'));
}

bool is_tail(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

/// Where the first character stands that UTF-8 writes with several octets; npos when a code page wrote it, or
/// none is beyond ASCII.
std::size_t find_utf8(std::string_view text) {
    const auto* const found =
        std::find_if(text.begin(), text.end(), [](char byte) { return static_cast<signed char>(byte) < 0; });
    const auto place = static_cast<std::size_t>(found - text.begin());
    const bool starts = place + 1 < text.size() && static_cast<unsigned char>(text[place]) >= 0xC2;
    return starts && is_tail(text[place + 1]) ? place : std::string_view::npos;
}

void check_utf8(std::string_view octets, Findings& findings) {
    const std::size_t place = find_utf8(octets);
    if (place != std::string_view::npos)
        findings.warn(line_of(octets, place),
                      "this looks like UTF-8; the window reads one byte per character, in the machine's "
                      "code page");
}

/// What is left of the octets.
std::string_view cut_at_end_of_text(std::string_view octets, Findings& findings) {
    const std::size_t end = up_to_end_of_text(octets).size();
    if (end == octets.size())
        return octets;
    const bool lost = octets.substr(end + 1).find_first_not_of("\r\n\x1A") != std::string_view::npos;
    findings.warn(line_of(octets, end), lost ? "the byte 0x1A ends the text here; what follows is not read"
                                             : "the file ends with the byte 0x1A");
    return octets.substr(0, end);
}

void check_zero_bytes(std::string_view octets, Findings& findings) {
    const std::size_t zero = octets.find('\0');
    if (zero != std::string_view::npos)
        findings.warn(line_of(octets, zero), "a zero byte; the window shows the text only up to here");
}

} // namespace

std::optional<std::string_view> check_octets(std::string_view octets, bool is_utf8, Findings& findings) {
    if (octets.starts_with("\xFF\xFE") || octets.starts_with("\xFE\xFF")) {
        findings.error(
            1, "the file is UTF-16; spec files have one byte per character, in the machine's code page");
        return std::nullopt;
    }
    std::string_view text = cut_at_end_of_text(octets, findings);
    if (auto error = line_end_error(text)) {
        findings.error(error->line, std::move(error->text));
        return std::nullopt;
    }
    check_zero_bytes(text, findings);
    if (text.starts_with(byte_order_mark)) {
        findings.error(1, "the file begins with a byte order mark, which is read as part of the key path");
        text.remove_prefix(byte_order_mark.size());
    } else if (!is_utf8) {
        check_utf8(text, findings);
    }
    return text;
}

} // namespace ctl
