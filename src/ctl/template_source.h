#pragma once
/// What every template is made from: a spec file's entries with a value, in UTF-8, each with a name that may
/// stand in an identifier.
#include "ctl/spec_model.h"

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
};

/// Says on the standard error stream that an entry is not in the template, and why.
void tell_unmapped(const TemplateSource& source, std::size_t line, std::string_view title,
                   std::string_view type, const std::string& reason);

/// Reads the spec file. Entries without a value are told as unmapped. Throws Failure when the file cannot be
/// read or has an error.
TemplateSource read_template_source(const std::string& path, unsigned code_page);

} // namespace ctl
