#include "ctl/template/source.h"

#include "base/text.h"
#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/printable.h"
#include "ctl/io/registry_names.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace ctl {
namespace {

std::string stem_of(const std::string& path) {
    const std::string file = path.substr(path.find_last_of("/\\:") + 1);
    return file.substr(0, file.rfind('.'));
}

std::string without_last_backslashes(std::string_view path) {
    return std::string(path.substr(0, path.find_last_not_of('\\') + 1));
}

std::string why_nowhere(const TemplateSource& source, const TemplateGroup&, const TemplateEntry&) {
    return source.key.empty() ? "the spec file names no key" : "";
}

class SourceReader {
public:
    SourceReader(const std::string& path, unsigned code_page)
        : code_page_(code_page), value_names_(code_page) {
        source_.path = path;
        source_.stem = stem_of(path);
    }

    TemplateSource read(const SpecModel& spec);

private:
    std::string utf8(const SpecLine& line) const { return to_utf8(line.text, code_page_); }
    std::string id_of(const std::string& value_name);
    void add(const SpecEntry& entry, std::size_t place);
    TemplateEntry made_of(const Declaration& declaration, std::size_t place);
    void add_left_out(const Declaration& declaration);

    unsigned code_page_;
    TemplateSource source_;
    std::set<std::string> ids_;
    RegistryNames value_names_;
};

TemplateSource SourceReader::read(const SpecModel& spec) {
    source_.configuration = spec.is_old ? source_.stem : utf8(spec.name);
    source_.key = without_last_backslashes(utf8(spec.registry_path));
    for (const GroupStart& group : spec.groups)
        source_.groups.push_back({utf8(group.name), {}});
    for (std::size_t i = 0; i < spec.entries.size(); ++i)
        add(spec.entries[i], i);
    leave_out_if(source_, why_nowhere);
    return std::move(source_);
}

/// Some of the systems that compare identifiers ignore letter case.
std::string SourceReader::id_of(const std::string& value_name) {
    const std::string id = identifier_of(value_name.empty() ? "Default" : value_name);
    std::string own = id;
    for (int number = 2; !ids_.insert(to_lower(own)).second; ++number)
        own = id + "_" + std::to_string(number);
    return own;
}

void SourceReader::add(const SpecEntry& entry, std::size_t place) {
    if (!entry.declaration.has_value()) {
        add_left_out(entry.declaration);
    } else {
        source_.groups[entry.group].entries.push_back(made_of(entry.declaration, place));
    }
}

TemplateEntry SourceReader::made_of(const Declaration& declaration, std::size_t place) {
    TemplateEntry entry{};
    entry.value_name = utf8(declaration.value_name);
    entry.id = id_of(entry.value_name);
    entry.title = declaration.title.text.empty() ? entry.value_name : utf8(declaration.title);
    entry.help = utf8(declaration.help_text);
    entry.type = declaration.kind->type;
    entry.form = declaration.kind->form;
    entry.line = declaration.title.number;
    const std::size_t first = value_names_.add(declaration.value_name.text, place + 1);
    entry.place = first == 0 ? place : first - 1;
    if (entry.form == ValueForm::option) {
        for (const SpecLine& option : declaration.further)
            entry.options.push_back(utf8(option));
    }
    return entry;
}

void SourceReader::add_left_out(const Declaration& declaration) {
    const std::string_view type = declaration.kind->type;
    const char* reason = "it tests a connection";
    if (type == "RemoveKey")
        reason = "it removes a key";
    if (type == "SignalEvent")
        reason = "it signals an event";
    leave_out(source_, declaration.title.number, utf8(declaration.title), type,
              std::string(reason) + ", and a template only sets values");
}

[[noreturn]] void refuse(const std::string& path, const SpecError& error, unsigned code_page) {
    throw Failure{ExitCode::invalid, path + ":" + std::to_string(error.line) +
                                         ": error: " + printable(to_utf8(error.text, code_page))};
}

} // namespace

std::string identifier_of(std::string text) {
    std::replace_if(
        text.begin(), text.end(),
        [](char byte) { return (byte & 0x80) != 0 || std::isalnum(static_cast<unsigned char>(byte)) == 0; },
        '_');
    return text.empty() ? "_" : text;
}

void leave_out(TemplateSource& source, std::size_t line, std::string_view title, std::string_view type,
               const std::string& reason) {
    source.left_out.push_back(source.path + ":" + std::to_string(line) + ": \"" + printable(title) + "\" (" +
                              std::string(type) + ") is left out: " + reason);
}

void leave_out_if(TemplateSource& source, WhyNot why_not) {
    for (TemplateGroup& group : source.groups) {
        std::erase_if(group.entries, [&](const TemplateEntry& entry) {
            const std::string reason = why_not(source, group, entry);
            if (!reason.empty())
                leave_out(source, entry.line, entry.title, entry.type, reason);
            return !reason.empty();
        });
    }
    std::erase_if(source.groups, [](const TemplateGroup& group) { return group.entries.empty(); });
}

TemplateSource template_source_of(const std::string& path, const SpecModel& spec, unsigned code_page) {
    for (const auto* errors : {&spec.errors, &spec.unknown_types}) {
        if (!errors->empty())
            refuse(path, errors->front(), code_page);
    }
    return SourceReader(path, code_page).read(spec);
}

} // namespace ctl
