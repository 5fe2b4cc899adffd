#include "ctl/template/admx_names.h"
#include "ctl/template/formats.h"
#include "ctl/template/xml.h"

#include <algorithm>
#include <set>

namespace ctl {
namespace {

/// What the format's own schema says.
constexpr std::size_t longest_item = 255;

std::size_t characters(const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

std::string why_no_list(const std::vector<std::string>& options) {
    if (options.empty())
        return "it has no options, and the list of a policy must not be empty";
    const bool are_short = std::all_of(options.begin(), options.end(), [](const std::string& option) {
        return characters(option) <= longest_item;
    });
    return are_short ? "" : "one of its options is longer than 255 characters, the limit of a policy's list";
}

bool fits(const TemplateSource& source, const TemplateGroup& group, const TemplateEntry& entry) {
    return fit_xml(
               {source.key, source.configuration, group.name, entry.title, entry.value_name, entry.help}) &&
           std::all_of(entry.options.begin(), entry.options.end(),
                       [](const std::string& option) { return fit_xml({option}); });
}

std::string why_not(const TemplateSource& source, const TemplateGroup& group, const TemplateEntry& entry) {
    if (entry.value_name.empty())
        return "it is the default value of its key, and a policy needs the name of a value";
    if (!fits(source, group, entry))
        return not_for_xml;
    return entry.form == ValueForm::option ? why_no_list(entry.options) : "";
}

/// A list shows each text once.
void drop_repeated(std::vector<std::string>& options) {
    std::set<std::string> seen;
    std::erase_if(options, [&](const std::string& option) { return !seen.insert(option).second; });
}

std::string categories(const TemplateSource& source) {
    std::string text = std::string("    <category name=\"") + admx::whole +
                       "\" displayName=" + admx::string_reference(admx::whole) + "/>\n";
    for (std::size_t i = 0; i < source.groups.size(); ++i) {
        if (source.groups[i].name.empty())
            continue;
        const std::string name = admx::category(i);
        text += "    <category name=\"" + name + "\" displayName=" + admx::string_reference(name) +
                ">\n      <parentCategory ref=\"" + admx::whole + "\"/>\n    </category>\n";
    }
    return text;
}

std::string list_items(const TemplateEntry& entry) {
    std::string text;
    for (std::size_t i = 0; i < entry.options.size(); ++i) {
        text += "          <item displayName=" + admx::string_reference(admx::item(i, entry.id)) +
                "><value><string>" + xml(entry.options[i]) + "</string></value></item>\n";
    }
    return text;
}

/// Whole numbers are written as the texts that the agent reads, and as no other type.
std::string element(const TemplateEntry& entry) {
    const std::string names =
        "id=\"" + admx::element(entry.id) + "\" valueName=\"" + xml(entry.value_name) + "\" ";
    switch (entry.form) {
    case ValueForm::integer:
        return "        <decimal " + names +
               "required=\"true\" minValue=\"0\" maxValue=\"2147483647\" storeAsText=\"true\"/>\n";
    case ValueForm::option:
        return "        <enum " + names + "required=\"true\">\n" + list_items(entry) + "        </enum>\n";
    default: return "        <text " + names + "maxLength=\"1023\"/>\n";
    }
}

std::string value_or_elements(const TemplateEntry& entry) {
    if (entry.form == ValueForm::flag) {
        return "      <enabledValue><string>true</string></enabledValue>\n"
               "      <disabledValue><string>false</string></disabledValue>\n";
    }
    return "      <elements>\n" + element(entry) + "      </elements>\n";
}

std::string policy(const TemplateSource& source, const TemplateEntry& entry, const std::string& category) {
    const bool is_switch = entry.form == ValueForm::flag;
    return "    <policy name=\"" + entry.id +
           "\" class=\"Machine\" displayName=" + admx::string_reference(admx::title(entry.id)) +
           " explainText=" + admx::string_reference(admx::help(entry.id)) +
           (is_switch ? "" : " presentation=" + admx::presentation_reference(entry.id)) + " key=\"" +
           xml(source.key) + "\"" + (is_switch ? " valueName=\"" + xml(entry.value_name) + "\"" : "") +
           ">\n      <parentCategory ref=\"" + category + "\"/>\n      <supportedOn ref=\"" +
           admx::supported + "\"/>\n" + value_or_elements(entry) + "    </policy>\n";
}

std::string policies(const TemplateSource& source) {
    std::string text;
    for (std::size_t i = 0; i < source.groups.size(); ++i) {
        const std::string category = source.groups[i].name.empty() ? admx::whole : admx::category(i);
        for (const TemplateEntry& entry : source.groups[i].entries)
            text += policy(source, entry, category);
    }
    return text;
}

} // namespace

std::string policy_prefix(const TemplateSource& source) { return identifier_of(source.stem); }

void drop_what_policies_lack(TemplateSource& source) {
    leave_out_if(source, why_not);
    for (TemplateGroup& group : source.groups) {
        for (TemplateEntry& entry : group.entries)
            drop_repeated(entry.options);
    }
}

std::string write_admx(const TemplateSource& source) {
    const std::string name = policy_prefix(source);
    return std::string("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<policyDefinitions revision=\"") +
           admx::revision + "\" schemaVersion=\"1.0\" xmlns=\"" + admx::name_space +
           "\">\n  <policyNamespaces>\n    <target prefix=\"" + name + "\" namespace=\"Tavrin.Policies." +
           name + "\"/>\n  </policyNamespaces>\n  <resources minRequiredRevision=\"" + admx::revision +
           "\" fallbackCulture=\"en-US\"/>\n  <supportedOn>\n    <definitions>\n      <definition name=\"" +
           admx::supported + "\" displayName=" + admx::string_reference(admx::supported) +
           "/>\n    </definitions>\n  </supportedOn>\n  <categories>\n" + categories(source) +
           "  </categories>\n  <policies>\n" + policies(source) + "  </policies>\n</policyDefinitions>\n";
}

} // namespace ctl
