#pragma once
/// What every template is made from: a spec file's entries with a value, in UTF-8, each with a name that may
/// stand in an identifier.
#include "ctl/change/state_file.h"
#include "specfile/spec_model.h"

#include <optional>
#include <string>
#include <string_view>
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
    /// Where there is one to be known; one without text and octets is to be removed.
    std::optional<WishedValue> value;
    std::size_t line;
    /// Of the first entry with this value name, in the spec file's order.
    std::size_t place;
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

/// The text with an underline for all but ASCII letters and digits.
std::string identifier_of(std::string text);

/// Notes that an entry is left out, and why.
void leave_out(TemplateSource& source, std::size_t line, std::string_view title, std::string_view type,
               const std::string& reason);

/// Likewise all entries that `why_not` gives a reason for, and then the groups without an entry.
using WhyNot = std::string (*)(const TemplateSource&, const TemplateGroup&, const TemplateEntry&);
void leave_out_if(TemplateSource& source, WhyNot why_not);

/// The source in a spec file that stands at `path`. Entries without a value are told as unmapped. Throws
/// Failure when the file has an error.
TemplateSource template_source_of(const std::string& path, const SpecModel& spec, unsigned code_page);

} // namespace ctl
