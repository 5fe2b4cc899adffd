#pragma once
/// The source of every template: the entries of a spec file that have a value, in UTF-8.
#include "ctl/change/state_file.h"
#include "specfile/spec_model.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ctl {

struct TemplateEntry {
    /// Letters, digits and underscores; unique even if letter case is ignored.
    std::string id;
    std::string title;
    std::string value_name;
    std::string help;
    std::string_view type;
    ValueForm form;
    std::vector<std::string> options;
    /// Nothing if it is unknown; one without text and octets is to be removed.
    std::optional<DesiredValue> value;
    std::size_t line;
    /// The place, in the spec file's order, of the first entry with this value name.
    std::size_t place;
};

struct TemplateGroup {
    /// Empty for entries outside any group.
    std::string name;
    std::vector<TemplateEntry> entries;
};

struct TemplateSource {
    /// The spec file's path, and its name without folder and extension.
    std::string path;
    std::string stem;
    std::string configuration;
    std::string key;
    /// Only groups with entries.
    std::vector<TemplateGroup> groups;
    /// A line for each entry that is left out, with the reason.
    std::vector<std::string> left_out;
};

/// The text with an underscore in place of each character other than ASCII letters and digits.
std::string identifier_of(std::string text);

/// Records that an entry is left out.
void leave_out(TemplateSource& source, std::size_t line, std::string_view title, std::string_view type,
               const std::string& reason);

/// Leaves out all entries for which `why_not` gives a reason, and then the groups without entries.
using WhyNot = std::string (*)(const TemplateSource&, const TemplateGroup&, const TemplateEntry&);
void leave_out_if(TemplateSource& source, WhyNot why_not);

/// Makes the source from the spec file at `path`, and leaves out the entries without a value. Throws Failure
/// if the file has an error.
TemplateSource template_source_of(const std::string& path, const SpecModel& spec, unsigned code_page);

} // namespace ctl
