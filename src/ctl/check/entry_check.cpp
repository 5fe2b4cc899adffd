#include "ctl/check/entry_check.h"

#include "base/text.h"

#include <algorithm>

namespace ctl {
namespace {

/// The room on a page for the help text and the title, in the smallest window and in the stock font.
constexpr std::size_t help_columns = 32;
constexpr std::size_t help_lines = 6;
constexpr std::size_t title_columns = 27;

/// The fewest octets of an entry, for an estimate of their number in a large file.
constexpr std::size_t octets_an_entry = 64;

/// The number of lines of the text when words are wrapped.
std::size_t wrapped_lines(std::string_view text) {
    std::size_t lines = 1;
    std::size_t column = 0;
    while (!text.empty()) {
        const std::size_t word = std::min(text.find(' '), text.size());
        if (column != 0 && column + word > help_columns) {
            ++lines;
            column = 0;
        }
        lines += (std::max<std::size_t>(word, 1) - 1) / help_columns;
        column += word + 1;
        text.remove_prefix(std::min(word + 1, text.size()));
    }
    return lines;
}

} // namespace

EntryCheck::EntryCheck(std::string_view text, unsigned code_page, Findings& findings)
    : findings_(findings), has_ampersand_(text.find('&') != std::string_view::npos),
      titles_(false, text.size() / octets_an_entry), value_names_(code_page, text.size() / octets_an_entry) {}

void EntryCheck::take(const Declaration& declaration) {
    ++entries_;
    if (declaration.kind == nullptr) {
        SpecError unknown = unknown_type(declaration);
        findings_.error(unknown.line, std::move(unknown.text));
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

void EntryCheck::finish() {
    if (entries_ == 0)
        findings_.warn(1, "the file has no entries, so the window shows nothing to edit");
    for (const SpecLine& title : wanted_titles_)
        check_wanted_title(title);
    if (server_list_ != 0)
        check_port_of_scan();
}

/// Returns the line of an earlier entry with this title; 0 if there is none.
std::size_t EntryCheck::note_title(const Declaration& declaration) {
    const SpecLine& title = declaration.title;
    // A connection test is never looked up.
    if (declaration.kind->least_further != 0) {
        wanted_titles_ = declaration.further;
        connection_test_ = title.number;
        return 0;
    }
    if (declaration.kind->form == ValueForm::server_list && server_list_ == 0)
        server_list_ = title.number;
    const std::size_t first = titles_.add(title.text, title.number);
    if (first == 0 && !declaration.has_value())
        titles_without_value_.add(title.text, title.number);
    return first;
}

void EntryCheck::check_title(const Declaration& declaration) {
    const SpecLine& title = declaration.title;
    const std::size_t first = note_title(declaration);
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

void EntryCheck::check_value_name(const Declaration& declaration) {
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

void EntryCheck::check_help(const Declaration& declaration) {
    const SpecLine& help = declaration.help_text;
    if (help.number == 0 && declaration.value_name.number != 0)
        findings_.warn(declaration.title.number, "the file ends before the help text of this entry");
    if (declaration.kind->least_further != 0)
        return;
    // Two wrapped lines hold more than one line's width, so a short text fits without being wrapped.
    const bool may_be_long = 2 * help.text.size() / help_columns + 1 > help_lines;
    const std::size_t lines = may_be_long ? wrapped_lines(help.text) : 1;
    if (lines > help_lines) {
        findings_.warn(help.number, "the help text takes about " + std::to_string(lines) +
                                        " lines; the page shows " + std::to_string(help_lines) +
                                        " in the smallest window");
    }
    check_underline(help, "help text");
}

void EntryCheck::check_options(const Declaration& declaration) {
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

void EntryCheck::check_underline(const SpecLine& line, const char* what) {
    if (has_ampersand_ && line.text.find('&') != std::string_view::npos) {
        findings_.warn(line.number,
                       std::string("\"&\" in the ") + what + " is not shown; it underlines the next letter");
    }
}

void EntryCheck::check_port_of_scan() {
    if (titles_.find("Port") == 0) {
        findings_.error(server_list_,
                        "\"Scan\" looks for the port in an entry titled \"Port\", and there is none");
    } else if (const std::size_t line = titles_without_value_.find("Port")) {
        findings_.error(line, "\"Scan\" looks for the port in this entry, but it has no value");
    }
}

void EntryCheck::check_wanted_title(const SpecLine& title) {
    if (title.number == 0) {
        findings_.error(connection_test_, "the file ends before the four titles of the connection test");
    } else if (titles_.find(title.text) == 0) {
        findings_.error(title.number, "the connection test looks for an entry titled " + quoted(title.text) +
                                          ", and there is none");
    } else if (titles_without_value_.find(title.text) != 0) {
        findings_.error(title.number, "the connection test uses the entry titled " + quoted(title.text) +
                                          ", but it has no value");
    }
}

} // namespace ctl
