#include "ctl/check/spec_check.h"

#include "base/text.h"
#include "ctl/check/entry_check.h"
#include "ctl/io/printable.h"
#include "specfile/spec_text.h"

#include <optional>
#include <utility>

namespace ctl {
namespace {

constexpr unsigned utf8 = 65001;
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

std::size_t line_of(std::string_view octets, std::size_t place) {
    return 1 + static_cast<std::size_t>(
                   std::count(octets.begin(), octets.begin() + static_cast<std::ptrdiff_t>(place), '\n'));
}

/// The place of the first character beyond ASCII, if it looks like UTF-8; else npos.
std::size_t find_utf8(std::string_view text) {
    const auto* const found =
        std::find_if(text.begin(), text.end(), [](char byte) { return static_cast<signed char>(byte) < 0; });
    const auto place = static_cast<std::size_t>(found - text.begin());
    const bool starts = place + 1 < text.size() && static_cast<unsigned char>(text[place]) >= 0xC2;
    return starts && is_tail(text[place + 1]) ? place : std::string_view::npos;
}

void check_utf8(std::string_view octets, Findings& findings) {
    const std::size_t place = find_utf8(octets);
    if (place != std::string_view::npos) {
        findings.warn(line_of(octets, place),
                      "this looks like UTF-8; the window reads one byte per character, in the machine's "
                      "code page");
    }
}

/// Returns the octets before the first 0x1A.
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

/// Returns the text in the octets, without a byte order mark, so that the rest can be checked; nothing if the
/// file cannot be read as text.
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

class SpecCheck {
public:
    SpecCheck(std::string_view octets, unsigned code_page, Findings& findings)
        : octets_(octets), findings_(findings), entries_(octets, code_page, findings) {}

    void run(std::string_view text);

private:
    void check_root(const SpecLine& path);
    void take(const ServiceName& service);
    void take(const GroupStart& group);
    void take(const Declaration& declaration) { entries_.take(declaration); }
    void take(const SpecError& error);
    std::size_t start_of(std::size_t line);
    std::size_t blank_lines_before(std::size_t line);
    bool goes_astray(std::size_t line, Severity severity);
    void tell_stray();

    std::string_view octets_;
    Findings& findings_;
    EntryCheck entries_;
    /// The line whose start was searched last.
    std::size_t known_line_ = 1;
    std::size_t known_start_ = 0;
    /// The finding for an entry after a blank line, kept until the errors that follow from it end.
    std::optional<Finding> stray_;
    std::size_t groups_ = 0;
};

void SpecCheck::run(std::string_view text) {
    SpecReader reader(text);
    check_root(reader.registry_path());
    if (!reader.is_old() && reader.name().text.empty())
        findings_.warn(2, "the configuration has no name");
    while (const auto statement = reader.next())
        std::visit([this](const auto& each) { take(each); }, *statement);
    tell_stray();
    entries_.finish();
}

void SpecCheck::check_root(const SpecLine& path) {
    const std::string_view root = path.text.substr(0, path.text.find('\\'));
    const std::string lower = to_lower(std::string(root));
    if (lower == "software" || lower == "system" || lower == "hardware")
        return;
    if (root.empty()) {
        findings_.error(path.number, "the key path is missing");
    } else {
        findings_.error(
            path.number,
            "the key path begins with " + quoted(root) +
                "; it must begin with a key below HKEY_LOCAL_MACHINE: SOFTWARE, SYSTEM or HARDWARE");
    }
}

/// The start of a line. Callers ask in the order of the lines, so the text is searched only once.
std::size_t SpecCheck::start_of(std::size_t line) {
    for (; known_line_ < line; ++known_line_)
        known_start_ = octets_.find('\n', known_start_) + 1;
    return known_start_;
}

std::size_t SpecCheck::blank_lines_before(std::size_t line) {
    std::string_view before = octets_.substr(0, start_of(line));
    std::size_t blank = 0;
    while (before.ends_with('\n')) {
        before.remove_suffix(before.ends_with("\r\n") ? 2 : 1);
        blank += before.empty() || before.ends_with('\n') ? 1U : 0U;
    }
    return blank;
}

/// Notes that this line would start an entry if no blank line had ended the group; false if none did. Errors
/// that follow from that are not reported.
bool SpecCheck::goes_astray(std::size_t line, Severity severity) {
    const std::size_t blank = groups_ == 0 ? 0 : blank_lines_before(line);
    if (blank != 0)
        stray_ = {line - blank, severity, "a blank line ends the group, so the entry after it is not read"};
    return blank != 0;
}

void SpecCheck::tell_stray() {
    if (const auto stray = std::exchange(stray_, std::nullopt))
        findings_.add(stray->line, stray->severity, stray->text);
}

void SpecCheck::take(const ServiceName& service) {
    const SpecLine& name = service.name;
    if (name.text.starts_with('$') && !goes_astray(name.number, Severity::warning)) {
        findings_.warn(name.number,
                       quoted(name.text) +
                           " is read as the name of the service, not as an entry: no group has begun");
    }
}

void SpecCheck::take(const GroupStart& group) {
    tell_stray();
    if (group.is_implied && groups_ != 0) {
        findings_.warn(group.name.number - blank_lines_before(group.name.number),
                       "the group ends here; the entries that follow are outside all groups");
    }
    ++groups_;
}

void SpecCheck::take(const SpecError& found) {
    if (stray_) {
        stray_->severity = Severity::error;
    } else if (!found.text.starts_with("Parse error: line \"$") ||
               !goes_astray(found.line, Severity::error)) {
        findings_.error(found.line, found.text);
    }
}

} // namespace

std::vector<Finding> check_spec(std::string_view octets, unsigned code_page) {
    Findings findings;
    if (const auto text = check_octets(octets, code_page == utf8, findings))
        SpecCheck(octets, code_page, findings).run(*text);
    return findings.in_order();
}

} // namespace ctl
