#include "specfile/spec_text.h"

#include "base/exceptions.h"
#include "base/text.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>
#include <utility>

namespace {

/// Ctrl-Z, which ends a text on Windows; `copy` appends one to the files that it joins.
constexpr char end_of_text = '\x1A';

SpecError parse_error(const SpecLine& line, const char* expected) {
    return {line.number, "Parse error: line \"" + std::string(line.text) + "\" not " + expected + " start"};
}

SpecLine without_first(const SpecLine& line) { return {line.text.substr(1), line.number}; }

} // namespace

std::string_view up_to_end_of_text(std::string_view octets) {
    return octets.substr(0, octets.find(end_of_text));
}

/// Opens the file in binary mode, because text mode ends the file at that byte only on some systems. Uses the
/// C library's files, because a stream would add all locales to the program.
std::optional<std::string> read_spec_file(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (file == nullptr)
        return std::nullopt;
    std::string bytes;
    char chunk[65536];
    while (const std::size_t size = std::fread(chunk, 1, sizeof chunk, file.get()))
        bytes.append(chunk, size);
    // Some systems open a directory and then refuse to read it.
    if (std::ferror(file.get()) != 0)
        return std::nullopt;
    bytes.resize(up_to_end_of_text(bytes).size());
    return bytes;
}

std::string_view LineReader::read() {
    if (at_end())
        return {};
    ++lines_read_;
    const char* const start = rest_.data();
    const auto* const feed = static_cast<const char*>(std::memchr(start, '\n', rest_.size()));
    if (feed == nullptr)
        return std::exchange(rest_, {});
    const auto size = static_cast<std::size_t>(feed - start);
    rest_ = {feed + 1, rest_.size() - size - 1};
    return {start, size > 0 && feed[-1] == '\r' ? size - 1 : size};
}

const EntryKind* find_entry_kind(std::string_view type) {
    const auto* const found = std::find_if(std::begin(entry_kinds), std::end(entry_kinds),
                                           [&](const EntryKind& kind) { return kind.type == type; });
    return found == std::end(entry_kinds) ? nullptr : found;
}

SpecReader::SpecReader(std::string_view text) : lines_(text), registry_path_(read_line()) {
    std::string_view& path = registry_path_.text;
    path.remove_prefix(std::min(path.find_first_not_of('\\'), path.size()));
    is_old_ = lines_.next_starts_with('!') || lines_.next_starts_with('$');
    if (!is_old_)
        name_ = read_line();
}

const SpecStatement* SpecReader::next() {
    while (!lines_.at_end()) {
        if (is_in_group_ && lines_.next_starts_with('$')) {
            read_declaration();
            return &statement_;
        }
        is_in_group_ = false;
        if (read_group_level())
            return &statement_;
    }
    return nullptr;
}

/// False for a blank line, which is no statement.
bool SpecReader::read_group_level() {
    // Each run of subspecs outside a group gets a separate unnamed group.
    if (is_old_ && lines_.next_starts_with('$')) {
        start_group({{}, lines_.line_number() + 1}, true);
        return true;
    }
    const SpecLine line = read_line();
    if (line.text.empty())
        return false;
    if (line.text.front() == '!') {
        start_group(without_first(line), false);
    } else {
        take_service_name(line);
    }
    return true;
}

void SpecReader::start_group(const SpecLine& name, bool is_implied) {
    is_in_group_ = true;
    statement_ = GroupStart{name, is_implied};
}

void SpecReader::take_service_name(const SpecLine& line) {
    if (has_service_name_) {
        statement_ = parse_error(line, "group");
        return;
    }
    has_service_name_ = true;
    statement_ = ServiceName{line};
}

void SpecReader::read_declaration() {
    const std::string_view rest = lines_.rest();
    const SpecLine start = read_line();
    if (start.text.empty() || start.text.front() != '$') {
        statement_ = parse_error(start, "subspec"); // never: its one caller has seen the "$"
        return;
    }
    Declaration& declaration = fresh_declaration();
    declaration.subspec = rest.substr(1);
    declaration.title = without_first(start);
    declaration.value_name = read_line();
    declaration.help_text = read_line();
    declaration.type = read_type();
    declaration.kind = find_entry_kind(declaration.type.text);
    if (declaration.kind != nullptr && declaration.kind->most_further > 0)
        read_further(declaration);
}

/// Fills it in place, because there may be a hundred thousand of them.
Declaration& SpecReader::fresh_declaration() {
    auto* const last = std::get_if<Declaration>(&statement_);
    if (last == nullptr)
        return statement_.emplace<Declaration>();
    last->further.clear();
    return *last;
}

SpecLine SpecReader::read_line() {
    if (lines_.at_end())
        return {};
    const std::string_view text = lines_.read();
    return {text, lines_.line_number()};
}

SpecLine SpecReader::read_type() {
    return is_old_ && at_subspec_end() ? SpecLine{"Integer", 0} : read_line();
}

void SpecReader::read_further(Declaration& declaration) {
    std::vector<SpecLine>& further = declaration.further;
    while (further.size() < declaration.kind->most_further &&
           (further.size() < declaration.kind->least_further || !at_subspec_end()))
        further.push_back(read_line());
}

/// At the next subspec, at a group start or at the end of the text.
bool SpecReader::at_subspec_end() const {
    return lines_.at_end() || lines_.next_starts_with('$') || lines_.next_starts_with('!');
}

std::optional<SpecError> line_end_error(std::string_view text) {
    if (text.find('\n') != std::string_view::npos || text.find('\r') == std::string_view::npos)
        return std::nullopt;
    return SpecError{1, "the lines end with a carriage return alone, so the file is read as one line; end "
                        "them with LF or CR LF"};
}

SpecError unknown_type(const Declaration& declaration) {
    const std::size_t line =
        declaration.type.number != 0 ? declaration.type.number : declaration.title.number;
    return {line, "Unknown type: \"" + std::string(declaration.type.text) + "\", for subspec " +
                      std::string(declaration.title.text)};
}

std::string missing_title(std::string_view title) {
    return "Did not find anything with the title \"" + std::string(title) + "\"";
}

std::int32_t integer_found(const std::string& stored) {
    try {
        return parse_int(stored);
    } catch (const error::EParseError& failure) {
        throw "Error reading value: " + failure.full_text();
    }
}
