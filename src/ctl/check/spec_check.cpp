#include "ctl/check/spec_check.h"

#include "base/text.h"
#include "ctl/check/octet_check.h"
#include "ctl/check/title_lookups.h"
#include "ctl/io/registry_names.h"
#include "specfile/spec_text.h"
#include "specfile/value_text.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace ctl {
namespace {

constexpr unsigned utf8 = 65001;

/// What the page shows in the smallest window, in the stock font: about so many characters in a line of the
/// help text, so many lines of it, and so many characters of the title in the frame.
constexpr std::size_t help_columns = 32;
constexpr std::size_t help_lines = 6;
constexpr std::size_t title_columns = 27;

/// At least so many has an entry in a file of many.
constexpr std::size_t octets_an_entry = 64;

/// How many lines the text takes when words are wrapped.
std::size_t wrapped_lines(std::string_view text) {
    std::size_t lines = 1;
    std::size_t column = 0;
    while (!text.empty()) {
        const std::size_t word = std::min(text.find(' '), text.size());
        if (column != 0 && column + word > help_columns) {
            ++lines;
            column = 0;
        }
        lines += word / (help_columns + 1);
        column += word + 1;
        text.remove_prefix(std::min(word + 1, text.size()));
    }
    return lines;
}

class SpecCheck {
public:
    SpecCheck(std::string_view octets, unsigned code_page)
        : octets_(octets), code_page_(code_page), titles_(octets.size() / octets_an_entry),
          value_names_(code_page, octets.size() / octets_an_entry) {}

    std::vector<Finding> run();

private:
    void check_head(const SpecReader& reader);
    void check_root(const SpecLine& path);
    void check_statement(const SpecStatement& statement);
    void take(const ServiceName& service);
    void take(const GroupStart& group);
    void take(const Declaration& declaration);
    void take(const SpecError& error);
    std::size_t start_of(std::size_t line);
    std::size_t blank_lines_before(std::size_t line);
    bool goes_astray(std::size_t line, Severity severity);
    void tell_stray();
    void check_title(const Declaration& declaration);
    void check_value_name(const Declaration& declaration);
    void check_help(const Declaration& declaration);
    void check_options(const Declaration& declaration);
    void check_underline(const SpecLine& line, const char* what);

    std::string_view octets_;
    unsigned code_page_;
    Findings findings_;
    /// Where the line starts that was looked for last.
    std::size_t known_line_ = 1;
    std::size_t known_start_ = 0;
    /// An entry outside any group, until it is known what became of it.
    std::optional<Finding> stray_;
    bool is_old_ = false;
    bool has_ampersand_ = false;
    std::size_t groups_ = 0;
    std::size_t entries_ = 0;
    TitleLookups titles_;
    RegistryNames value_names_;
};

std::vector<Finding> SpecCheck::run() {
    const auto text = check_octets(octets_, code_page_ == utf8, findings_);
    if (!text)
        return findings_.in_order();
    has_ampersand_ = text->find('&') != std::string_view::npos;
    SpecReader reader(*text);
    is_old_ = reader.is_old();
    check_head(reader);
    while (const auto statement = reader.next())
        check_statement(*statement);
    tell_stray();
    if (entries_ == 0)
        findings_.warn(1, "the file has no entries, so the window shows nothing to edit");
    titles_.check(findings_);
    return findings_.in_order();
}

void SpecCheck::check_head(const SpecReader& reader) {
    check_root(reader.registry_path());
    if (!is_old_ && reader.name().text.empty())
        findings_.warn(2, "the configuration has no name");
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

void SpecCheck::check_statement(const SpecStatement& statement) {
    std::visit([this](const auto& each) { take(each); }, statement);
}

/// Where a line starts; lines are asked for in their order, so the text is gone through once.
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

/// A line that would start an entry, behind a blank line. What follows from it is not reported on top.
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

void SpecCheck::take(const Declaration& declaration) {
    ++entries_;
    if (declaration.kind == nullptr) {
        const SpecError unknown = unknown_type(declaration);
        findings_.error(unknown.line, unknown.text);
        check_underline(declaration.title, "title");
        check_underline(declaration.help_text, "help text");
        return;
    }
    check_title(declaration);
    check_value_name(declaration);
    check_help(declaration);
    if (declaration.kind->form == ValueForm::option)
        check_options(declaration);
}

void SpecCheck::check_title(const Declaration& declaration) {
    const SpecLine& title = declaration.title;
    const std::size_t first = titles_.add(declaration);
    // A connection test has no page.
    if (declaration.kind->least_further != 0)
        return;
    if (first != 0) {
        findings_.warn(title.number, "the title " + quoted(title.text) + " is already in line " +
                                         std::to_string(first) + "; lookups find only that entry");
    }
    if (title.text.empty())
        findings_.warn(title.number, "the entry has no title");
    if (title.text.size() > title_columns) {
        findings_.warn(title.number, "the title has " + std::to_string(title.text.size()) +
                                         " characters; the page shows about " +
                                         std::to_string(title_columns));
    }
    check_underline(title, "title");
}

void SpecCheck::check_value_name(const Declaration& declaration) {
    const SpecLine& name = declaration.value_name;
    if (name.number == 0)
        findings_.warn(declaration.title.number, "the file ends before the value name of this entry");
    if (!declaration.has_value() || name.number == 0)
        return;
    if (name.text.empty())
        findings_.warn(name.number, "the value name is empty, which means the key's default value");
    if (const std::size_t first = value_names_.add(name.text, name.number)) {
        findings_.warn(name.number, "the value name " + quoted(name.text) + " is already in line " +
                                        std::to_string(first) +
                                        "; the two entries overwrite each other's value");
    }
}

void SpecCheck::check_help(const Declaration& declaration) {
    const SpecLine& help = declaration.help_text;
    if (help.number == 0 && declaration.value_name.number != 0)
        findings_.warn(declaration.title.number, "the file ends before the help text of this entry");
    if (declaration.kind->least_further != 0)
        return;
    // Two lines together hold more than one would: a short text needs no wrapping to be known to fit.
    const bool may_be_long = 2 * help.text.size() / help_columns + 1 > help_lines;
    const std::size_t lines = may_be_long ? wrapped_lines(help.text) : 1;
    if (lines > help_lines) {
        findings_.warn(help.number, "the help text takes about " + std::to_string(lines) +
                                        " lines; the page shows " + std::to_string(help_lines) +
                                        " in the smallest window");
    }
    check_underline(help, "help text");
}

void SpecCheck::check_options(const Declaration& declaration) {
    if (declaration.further.empty())
        findings_.warn(declaration.type.number, "there are no options to choose from");
    NameTable seen(false);
    for (const SpecLine& option : declaration.further) {
        if (option.text.empty())
            findings_.warn(option.number, "a blank line among the options is an option with an empty text");
        if (option.text.size() > longest_value) {
            findings_.warn(option.number, "the option has " + std::to_string(option.text.size()) +
                                              " characters; only " + std::to_string(longest_value) +
                                              " are stored");
        }
        if (const std::size_t first = seen.add(option.text, option.number)) {
            findings_.warn(option.number, "the option " + quoted(option.text) + " is already in line " +
                                              std::to_string(first));
        }
    }
}

void SpecCheck::check_underline(const SpecLine& line, const char* what) {
    if (has_ampersand_ && line.text.find('&') != std::string_view::npos) {
        findings_.warn(line.number,
                       std::string("\"&\" in the ") + what + " is not shown; it underlines the next letter");
    }
}

} // namespace

std::vector<Finding> check_spec(std::string_view octets, unsigned code_page) {
    return SpecCheck(octets, code_page).run();
}

} // namespace ctl
