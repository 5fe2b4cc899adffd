#include "spec/spec_parser.h"

#include "error/trace.h"
#include "spec/configuration.h"
#include "spec/entry_kinds.h"
#include "spec/spec_file.h"

#include <algorithm>
#include <utility>

namespace {

std::string parse_error(std::string_view line, const char* expected) {
    return "Parse error: line \"" + std::string(line) + "\" not " + expected + " start";
}

std::string unknown_type(const Subspec& subspec) {
    return "Unknown type: \"" + std::string(subspec.type) + "\", for subspec " + std::string(subspec.title);
}

class SpecParser {
public:
    explicit SpecParser(Configuration& target) : target_(target), lines_(target.spec_text) {}

    void parse(const std::string& registry_value_name);

private:
    void read_registry_path();
    void read_group_level_line();
    void take_service_name(std::string_view line);
    void add_group(std::string_view name);
    Subspec read_subspec();
    std::string_view read_type();
    OwnedEntry make_entry_of(Subspec subspec);
    void report_unknown_type(const Subspec& subspec) const;

    Configuration& target_;
    LineReader lines_;
    bool is_old_ = false;
};

void SpecParser::parse(const std::string& registry_value_name) {
    read_registry_path();
    is_old_ = lines_.next_starts_with('!') || lines_.next_starts_with('$');
    trace(is_old_ ? "Reading old file\n" : "Reading new file\n");
    target_.name = is_old_ ? registry_value_name : std::string(lines_.read());
    while (!lines_.at_end()) {
        // Every run of subspecs outside a group gets an unnamed group of its own.
        if (is_old_ && lines_.next_starts_with('$')) {
            trace("No groups in file\n");
            add_group({});
        }
        read_group_level_line();
    }
}

void SpecParser::read_registry_path() {
    std::string_view path = lines_.read();
    path.remove_prefix(std::min(path.find_first_not_of('\\'), path.size()));
    target_.registryPath = path;
}

void SpecParser::read_group_level_line() {
    const std::string_view line = lines_.read();
    if (line.empty())
        return;
    if (line.front() == '!') {
        add_group(line.substr(1));
    } else {
        take_service_name(line);
    }
}

void SpecParser::take_service_name(std::string_view line) {
    if (!target_.serviceName.empty())
        throw parse_error(line, "group");
    target_.serviceName = line;
}

void SpecParser::add_group(std::string_view name) {
    Group& group = target_.groups.emplace_back();
    group.name = name;
    while (lines_.next_starts_with('$')) {
        if (OwnedEntry entry = make_entry_of(read_subspec()))
            group.entries.push_back(std::move(entry));
    }
}

Subspec SpecParser::read_subspec() {
    const std::string_view start = lines_.read();
    if (start.empty() || start.front() != '$')
        throw parse_error(start, "subspec");
    Subspec subspec;
    subspec.title = start.substr(1);
    subspec.value_name = lines_.read();
    subspec.help_text = lines_.read();
    subspec.type = read_type();
    return subspec;
}

std::string_view SpecParser::read_type() {
    return is_old_ && at_subspec_end(lines_) ? "Integer" : lines_.read();
}

OwnedEntry SpecParser::make_entry_of(Subspec subspec) {
    const EntryKind* const kind = find_entry_kind(subspec.type);
    if (kind == nullptr) {
        report_unknown_type(subspec);
        return {};
    }
    if (kind->read_more != nullptr)
        subspec.more = kind->read_more(lines_);
    const bool wanted = !target_.connectionTestOnly || kind->for_connection_test;
    return wanted ? kind->build(subspec, target_) : OwnedEntry();
}

void SpecParser::report_unknown_type(const Subspec& subspec) const {
    if (target_.connectionTestOnly)
        throw unknown_type(subspec);
    MessageBoxA(nullptr, unknown_type(subspec).c_str(), "Error", MB_OK | MB_ICONERROR);
}

} // namespace

void parse_spec(Configuration& target, const std::string& registry_value_name, std::string text) {
    target.spec_text = std::move(text);
    SpecParser(target).parse(registry_value_name);
}

/// Here and not beside the lookups, so that the entries may use the lookups and the parser the entries.
Configuration::Configuration(const std::string& registry_value_name, const std::string& path,
                             bool connection_test_only)
    : connectionTestOnly(connection_test_only) {
    std::optional<std::string> file = read_spec_file(path);
    if (!file && connectionTestOnly)
        throw "Unable to open file: " + path;
    if (file)
        parse_spec(*this, registry_value_name, std::move(*file));
}
