#pragma once
/// What every template is made from: a spec file's entries with a value, in UTF-8, each with a name that may
/// stand in an identifier.
#include "specfile/spec_model.h"

#include <optional>
#include <string>
#include <vector>

namespace ctl {

struct TemplateEntry {
    /// Letters, digits and underlines; unlike that of every other entry also without regard to letter case.
    std::string id;
    std::string title;
    std::string value_name;
    std::string help;
    std::string_view type;
    ValueForm form;
    std::vector<std::string> options;
    /// Where there is one to be known.
    std::optional<std::string> value;
    std::size_t line;
};

struct TemplateGroup {
    /// Empty for entries that stand in none.
    std::string name;
    std::vector<TemplateEntry> entries;
};

struct TemplateSource {
    /// The spec file's path, and its name without folder and extension.
    std::string path;
    std::string stem;
    std::string configuration;
    std::string key;
    /// Without those that have no entry to show.
    std::vector<TemplateGroup> groups;
    /// The entries that are in no template, each with the reason, a line each.
    std::vector<std::string> left_out;
};

/// Notes that an entry is left out, and why.
void leave_out(TemplateSource& source, std::size_t line, std::string_view title, std::string_view type,
               const std::string& reason);

/// The source in the octets of a spec file that stands at `path`. Entries without a value are told as
/// unmapped. Throws Failure when the file has an error.
TemplateSource template_source_of(const std::string& path, std::string octets, unsigned code_page);

/// The same of the file itself; throws Failure also when it cannot be read.
TemplateSource read_template_source(const std::string& path, unsigned code_page);

} // namespace ctl
