#include "ctl/template/admx_names.h"
#include "ctl/template/formats.h"
#include "ctl/template/xml.h"

namespace ctl {
namespace {

std::string string_of(const std::string& id, const std::string& text) {
    return "      <string id=\"" + id + "\">" + xml(text) + "</string>\n";
}

/// What a policy of this kind does beyond what its help text says.
std::string explained(const TemplateSource& source, const TemplateEntry& entry) {
    std::string text =
        entry.help + "\n\nSets \"" + entry.value_name + "\" below HKEY_LOCAL_MACHINE\\" + source.key + ". ";
    text += entry.form == ValueForm::flag ? "Enabled stores \"true\" and Disabled \"false\"; the value stays"
                                          : "Disabled deletes the value; one that was set stays";
    return text + " when the policy no longer applies. The agent reads it when its service starts.";
}

/// Between tags a line end stands as itself.
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

/// The schema wants at least one in the table.
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

std::string write_adml(const TemplateSource& source) {
    return std::string("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<policyDefinitionResources revision=\"") +
           admx::revision + "\" schemaVersion=\"1.0\" xmlns=\"" + admx::name_space + "\">\n  <displayName>" +
           xml(source.configuration) + "</displayName>\n  <description>The settings of " +
           xml(source.configuration) + "</description>\n  <resources>\n    <stringTable>\n" +
           strings(source) + "    </stringTable>\n" + presentations(source) +
           "  </resources>\n</policyDefinitionResources>\n";
}

} // namespace ctl
