#include "ctl/template/formats.h"

#include "base/text.h"
#include "ctl/io/printable.h"

#include <algorithm>
#include <set>

namespace ctl {
namespace {

/// The names by which the two files of a policy template refer to each other's parts. The prefixes keep the
/// names of different parts distinct, whatever an entry is called.
namespace admx {

constexpr const char* name_space = "http://schemas.microsoft.com/GroupPolicy/2006/07/PolicyDefinitions";
constexpr const char* revision = "1.0";
constexpr const char* whole = "Configuration";
constexpr const char* supported = "Supported";

std::string category(std::size_t group) { return "Group_" + std::to_string(group + 1); }
std::string title(const std::string& id) { return "Title_" + id; }
std::string help(const std::string& id) { return "Help_" + id; }
std::string element(const std::string& id) { return "Value_" + id; }
std::string item(std::size_t option, const std::string& id) {
    return "Item_" + std::to_string(option + 1) + "_" + id;
}
std::string string_reference(const std::string& id) { return "\"$(string." + id + ")\""; }
std::string presentation_reference(const std::string& id) { return "\"$(presentation." + id + ")\""; }

} // namespace admx

/// The limit of the format's own schema.
constexpr std::size_t longest_item = 255;

std::string why_no_list(const std::vector<std::string>& options) {
    if (options.empty())
        return "it has no options, and the list of a policy must not be empty";
    const bool are_short = std::all_of(options.begin(), options.end(), [](const std::string& option) {
        return width_of(option) <= longest_item;
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

/// Whole numbers are stored as texts, because the agent reads texts.
std::string element(const TemplateEntry& entry) {
    const std::string names =
        "id=\"" + admx::element(entry.id) + "\" valueName=\"" + xml(entry.value_name) + "\" ";
    switch (entry.form) {
    case ValueForm::integer:
        return "        <decimal " + names +
               "required=\"true\" minValue=\"0\" maxValue=\"2147483647\" storeAsText=\"true\"/>\n";
    case ValueForm::option:
        return "        <enum " + names + "required=\"true\">\n" + list_items(entry) + "        </enum>\n";
    default: return "        <text " + names + "maxLength=\"" + std::to_string(longest_value) + "\"/>\n";
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

std::string string_of(const std::string& id, const std::string& text) {
    return "      <string id=\"" + id + "\">" + xml(text) + "</string>\n";
}

/// The help text, followed by the effect of a policy of this kind.
std::string explained(const TemplateSource& source, const TemplateEntry& entry) {
    std::string text =
        entry.help + "\n\nSets \"" + entry.value_name + "\" below HKEY_LOCAL_MACHINE\\" + source.key + ". ";
    text += entry.form == ValueForm::flag ? "Enabled stores \"true\" and Disabled \"false\"; the value stays"
                                          : "Disabled deletes the value; one that was set stays";
    return text + " when the policy no longer applies. The agent reads it when its service starts.";
}

/// Between tags, a line end needs no escape.
std::string with_line_ends(std::string text) {
    for (std::size_t at = text.find("&#10;"); at != std::string::npos; at = text.find("&#10;", at))
        text.replace(at, 5, "\n");
    return text;
}

std::string strings_of(const TemplateSource& source, const TemplateEntry& entry) {
    std::string text = string_of(admx::title(entry.id), entry.title) +
                       with_line_ends(string_of(admx::help(entry.id), explained(source, entry)));
    for (std::size_t i = 0; i < entry.options.size(); ++i)
        text += string_of(admx::item(i, entry.id), entry.options[i]);
    return text;
}

std::string strings(const TemplateSource& source) {
    std::string text = string_of(admx::whole, source.configuration) +
                       string_of(admx::supported, "Machines with " + source.configuration);
    for (std::size_t i = 0; i < source.groups.size(); ++i) {
        const TemplateGroup& group = source.groups[i];
        if (!group.name.empty())
            text += string_of(admx::category(i), group.name);
        for (const TemplateEntry& entry : group.entries)
            text += strings_of(source, entry);
    }
    return text;
}

std::string control(const TemplateEntry& entry) {
    const std::string reference = "refId=\"" + admx::element(entry.id) + "\"";
    switch (entry.form) {
    case ValueForm::integer:
        return "<decimalTextBox " + reference + " defaultValue=\"0\" spin=\"false\">" + xml(entry.title) +
               "</decimalTextBox>";
    case ValueForm::option:
        return "<dropdownList " + reference + " noSort=\"true\" defaultItem=\"0\">" + xml(entry.title) +
               "</dropdownList>";
    default: return "<textBox " + reference + "><label>" + xml(entry.title) + "</label></textBox>";
    }
}

/// The schema requires at least one element in the table.
std::string presentations(const TemplateSource& source) {
    std::string text;
    for (const TemplateGroup& group : source.groups) {
        for (const TemplateEntry& entry : group.entries) {
            if (entry.form != ValueForm::flag)
                text += "      <presentation id=\"" + entry.id + "\">" + control(entry) + "</presentation>\n";
        }
    }
    return text.empty() ? text : "    <presentationTable>\n" + text + "    </presentationTable>\n";
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

std::string write_adml(const TemplateSource& source) {
    return std::string("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<policyDefinitionResources revision=\"") +
           admx::revision + "\" schemaVersion=\"1.0\" xmlns=\"" + admx::name_space + "\">\n  <displayName>" +
           xml(source.configuration) + "</displayName>\n  <description>The settings of " +
           xml(source.configuration) + "</description>\n  <resources>\n    <stringTable>\n" +
           strings(source) + "    </stringTable>\n" + presentations(source) +
           "  </resources>\n</policyDefinitionResources>\n";
}

} // namespace ctl
