#include "ctl/spec_check.h"

#include "ctl/seen_names.h"
#include "error/text.h"
#include "spec/spec_text.h"
#include "spec/value_forms.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace ctl {
namespace {

constexpr char end_of_text = '\x1A';

/// What the page shows in the smallest window, in the stock font: about so many characters in a line of the
/// help text, so many lines of it, and so many characters of the title in the frame.
constexpr std::size_t help_columns = 32;
constexpr std::size_t help_lines = 6;
constexpr std::size_t title_columns = 32;

/// At least so many has an entry in a file of many.
constexpr std::size_t octets_an_entry = 64;

std::string quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::size_t line_of(std::string_view octets, std::size_t place) {
    return 1 + static_cast<std::size_t>(
                   std::count(octets.begin(), octets.begin() + static_cast<std::ptrdiff_t>(place), '\n'));
}

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

class SpecCheck {
public:
    SpecCheck(std::string_view octets, bool is_utf8)
        : octets_(octets), is_utf8_(is_utf8), titles_(false, octets.size() / octets_an_entry),
          value_names_(true, octets.size() / octets_an_entry) {}

    std::vector<Finding> run();

private:
    void error(std::size_t line, std::string text) { add(line, Severity::error, std::move(text)); }
    void warn(std::size_t line, std::string text) { add(line, Severity::warning, std::move(text)); }
    void add(std::size_t line, Severity severity, std::string text);

    bool is_utf16();
    void check_marks();
    void check_end_of_text();
    void check_zero_bytes();
    void check_head(const SpecReader& reader);
    void check_root(const SpecLine& path);
    void check_statement(const SpecStatement& statement);
    void take(const ServiceName& service);
    void take(const GroupStart& group);
    void take(const Declaration& declaration);
    void take(const SpecError& error);
    void check_title(const Declaration& declaration);
    void check_value_name(const Declaration& declaration);
    void check_help(const Declaration& declaration);
    void check_options(const Declaration& declaration);
    void check_underline(const SpecLine& line, const char* what);
    void check_lookups();
    void check_wanted_title(const SpecLine& title);
    void check_utf8();

    std::string_view octets_;
    bool is_utf8_;
    std::vector<Finding> findings_;
    bool is_old_ = false;
    bool has_ampersand_ = false;
    std::size_t groups_ = 0;
    std::size_t entries_ = 0;
    SeenNames titles_;
    /// Of those, the ones whose first entry has no registry value.
    SeenNames titles_without_value_{false};
    SeenNames value_names_;
    /// What the connection test looks up, and the lines where it and the first server list stand.
    std::vector<SpecLine> wanted_titles_;
    std::size_t connection_test_ = 0;
    std::size_t server_list_ = 0;
};

void SpecCheck::add(std::size_t line, Severity severity, std::string text) {
    findings_.push_back({std::max<std::size_t>(line, 1), severity, std::move(text)});
}

std::vector<Finding> SpecCheck::run() {
    if (is_utf16())
        return findings_;
    check_marks();
    has_ampersand_ = octets_.find('&') != std::string_view::npos;
    SpecReader reader(octets_);
    is_old_ = reader.is_old();
    check_head(reader);
    while (const auto statement = reader.next())
        check_statement(*statement);
    if (entries_ == 0)
        warn(1, "the file declares no entry, so the window shows nothing to edit");
    check_lookups();
    std::stable_sort(findings_.begin(), findings_.end(),
                     [](const Finding& one, const Finding& other) { return one.line < other.line; });
    return findings_;
}

bool SpecCheck::is_utf16() {
    const bool marked = octets_.starts_with("\xFF\xFE") || octets_.starts_with("\xFE\xFF");
    if (marked)
        error(1, "the file is UTF-16; spec files have one octet a character, in the machine's code page");
    return marked;
}

void SpecCheck::check_marks() {
    check_end_of_text();
    check_zero_bytes();
    if (octets_.starts_with("\xEF\xBB\xBF")) {
        error(1, "a byte order mark stands before the key path and is taken for a part of it");
        octets_.remove_prefix(3); // so that the rest is judged as it is meant
    } else if (!is_utf8_) {
        check_utf8();
    }
}

void SpecCheck::check_utf8() {
    const std::size_t place = find_utf8(octets_);
    if (place != std::string_view::npos) {
        warn(line_of(octets_, place),
             "this looks like UTF-8; the window reads one octet a character, in the machine's "
             "code page");
    }
}

void SpecCheck::check_end_of_text() {
    const std::size_t end = octets_.find(end_of_text);
    if (end == std::string_view::npos)
        return;
    const std::string_view rest = octets_.substr(end + 1);
    const bool lost = rest.find_first_not_of("\r\n\x1A") != std::string_view::npos;
    warn(line_of(octets_, end), lost ? "the byte 0x1A ends the text here; what follows is not read"
                                     : "the byte 0x1A at the end of the text");
    octets_ = octets_.substr(0, end);
}

void SpecCheck::check_zero_bytes() {
    const std::size_t zero = octets_.find('\0');
    if (zero != std::string_view::npos)
        warn(line_of(octets_, zero), "a zero byte; the window shows a text only up to it");
}

void SpecCheck::check_head(const SpecReader& reader) {
    check_root(reader.registry_path());
    if (!is_old_ && reader.name().text.empty())
        warn(2, "the configuration has no name");
}

void SpecCheck::check_root(const SpecLine& path) {
    const std::string_view root = path.text.substr(0, path.text.find('\\'));
    const std::string lower = to_lower(std::string(root));
    if (lower == "software" || lower == "system" || lower == "hardware")
        return;
    if (root.empty()) {
        error(path.number, "the key path is missing");
    } else {
        error(path.number,
              "the key path begins with " + quoted(root) +
                  "; below HKEY_LOCAL_MACHINE, where the tool looks, there are SOFTWARE, SYSTEM and "
                  "HARDWARE to read");
    }
}

void SpecCheck::check_statement(const SpecStatement& statement) {
    std::visit([this](const auto& each) { take(each); }, statement);
}

void SpecCheck::take(const ServiceName& service) {
    if (!service.name.text.starts_with('$'))
        return;
    warn(service.name.number,
         quoted(service.name.text) + " is taken for the name of the service, not for an entry: " +
             (groups_ == 0 ? "no group has begun" : "a blank line ended the group before it"));
}

void SpecCheck::take(const GroupStart& group) {
    if (group.is_implied && groups_ != 0)
        warn(group.name.number, "a blank line ended the group; what follows stands in one without a name");
    ++groups_;
}

void SpecCheck::take(const SpecError& found) { error(found.line, found.text); }

void SpecCheck::take(const Declaration& declaration) {
    ++entries_;
    if (declaration.kind == nullptr) {
        take(unknown_type(declaration));
        check_underline(declaration.title, "title");
        check_underline(declaration.help_text, "help text");
        return;
    }
    check_title(declaration);
    check_value_name(declaration);
    check_help(declaration);
    if (declaration.kind->form == ValueForm::option)
        check_options(declaration);
    if (declaration.kind->form == ValueForm::server_list && server_list_ == 0)
        server_list_ = declaration.title.number;
    if (declaration.kind->least_further != 0) {
        wanted_titles_ = declaration.further;
        connection_test_ = declaration.title.number;
    }
}

void SpecCheck::check_title(const Declaration& declaration) {
    const SpecLine& title = declaration.title;
    // A connection test has no page and is never looked up.
    if (declaration.kind->least_further != 0)
        return;
    const std::size_t first = titles_.add(title.text, title.number);
    if (first == 0 && declaration.kind->form == ValueForm::none)
        titles_without_value_.add(title.text, title.number);
    if (first != 0) {
        warn(title.number, "the title " + quoted(title.text) + " stands at line " + std::to_string(first) +
                               " already; lookups find only that one");
    }
    if (title.text.empty())
        warn(title.number, "the entry has no title");
    if (title.text.size() > title_columns) {
        warn(title.number, "the title has " + std::to_string(title.text.size()) +
                               " characters; the page shows about " + std::to_string(title_columns));
    }
    check_underline(title, "title");
}

void SpecCheck::check_value_name(const Declaration& declaration) {
    const SpecLine& name = declaration.value_name;
    if (name.number == 0)
        warn(declaration.title.number, "the file ends before the value name of this entry");
    if (declaration.kind->form == ValueForm::none || name.number == 0)
        return;
    if (name.text.empty())
        warn(name.number, "the value name is empty: that is the key's default value");
    if (const std::size_t first = value_names_.add(name.text, name.number)) {
        warn(name.number, "the value name " + quoted(name.text) + " stands at line " + std::to_string(first) +
                              " already; the two entries overwrite each other's value");
    }
}

void SpecCheck::check_help(const Declaration& declaration) {
    const SpecLine& help = declaration.help_text;
    if (help.number == 0 && declaration.value_name.number != 0)
        warn(declaration.title.number, "the file ends before the help text of this entry");
    if (declaration.kind->least_further != 0)
        return;
    // Two lines together hold more than one would: a short text needs no wrapping to be known to fit.
    const bool may_be_long = 2 * help.text.size() / help_columns + 1 > help_lines;
    const std::size_t lines = may_be_long ? wrapped_lines(help.text) : 1;
    if (lines > help_lines) {
        warn(help.number, "the help text takes about " + std::to_string(lines) + " lines; the page shows " +
                              std::to_string(help_lines) + " in the smallest window");
    }
    check_underline(help, "help text");
}

void SpecCheck::check_options(const Declaration& declaration) {
    if (declaration.further.empty())
        warn(declaration.type.number, "there is no option to choose");
    SeenNames seen(false);
    for (const SpecLine& option : declaration.further) {
        if (option.text.empty())
            warn(option.number, "a blank line among the options is an option with an empty text");
        if (option.text.size() > longest_value) {
            warn(option.number, "the option has " + std::to_string(option.text.size()) + " characters; " +
                                    std::to_string(longest_value) + " are stored");
        }
        if (const std::size_t first = seen.add(option.text, option.number)) {
            warn(option.number, "the option " + quoted(option.text) + " stands at line " +
                                    std::to_string(first) + " already");
        }
    }
}

void SpecCheck::check_underline(const SpecLine& line, const char* what) {
    if (has_ampersand_ && line.text.find('&') != std::string_view::npos) {
        warn(line.number,
             std::string("\"&\" in the ") + what + " becomes an underline of the letter behind it");
    }
}

void SpecCheck::check_lookups() {
    for (const SpecLine& title : wanted_titles_)
        check_wanted_title(title);
    if (server_list_ != 0 && titles_.find("Port") == 0)
        warn(server_list_, "\"Scan\" looks for the port in an entry titled \"Port\", and there is none");
}

void SpecCheck::check_wanted_title(const SpecLine& title) {
    if (title.number == 0) {
        error(connection_test_, "the file ends before the four titles of the connection test");
    } else if (titles_.find(title.text) == 0) {
        error(title.number,
              "the connection test does not find anything with the title " + quoted(title.text));
    } else if (titles_without_value_.find(title.text) != 0) {
        error(title.number,
              "the connection test finds the title " + quoted(title.text) + ", but it has no value");
    }
}

} // namespace

std::vector<Finding> check_spec(std::string_view octets, bool is_utf8) {
    return SpecCheck(octets, is_utf8).run();
}

} // namespace ctl
