#include "ctl/io/printable.h"
#include "ctl/template/formats.h"

#include <cstdint>
#include <cstdio>

namespace ctl {
namespace {

/// A fixed date, because the file must depend on nothing but its source.
constexpr const char* always = "2026-01-01 0:00:00";

std::uint64_t hash_of(const std::string& text, std::uint64_t start) {
    std::uint64_t hash = start;
    for (const char byte : text)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 1099511628211U;
    hash = (hash ^ (hash >> 32)) * 0xD6E8FEB86659FD93U;
    return hash ^ (hash >> 32);
}

/// The same identifier for the same text, in Windows' form, version 8: the layout is up to the vendor.
std::string identifier(const std::string& text) {
    const std::uint64_t first = (hash_of(text, 14695981039346656037U) & 0xFFFFFFFFFFFF0FFFU) | 0x8000U;
    const std::uint64_t second =
        (hash_of(text, 0x5CEB7E07D35A1B29U) & 0x3FFFFFFFFFFFFFFFU) | 0x8000000000000000U;
    char buffer[48];
    std::snprintf(buffer, sizeof buffer, "{%08X-%04X-%04X-%04X-%012llX}", static_cast<unsigned>(first >> 32),
                  static_cast<unsigned>((first >> 16) & 0xFFFF), static_cast<unsigned>(first & 0xFFFF),
                  static_cast<unsigned>(second >> 48),
                  static_cast<unsigned long long>(second & 0xFFFFFFFFFFFFU));
    return buffer;
}

struct Action {
    const char* letter;
    const char* image;
};

constexpr Action update{"U", "2"};
constexpr Action removal{"D", "3"};

std::string value_of(const TemplateEntry& entry) { return entry.value ? entry.value->text.value_or("") : ""; }

std::string why_not(const TemplateSource& source, const TemplateGroup& group, const TemplateEntry& entry) {
    if (entry.value && entry.value->octets)
        return "its value is a " + entry.value->type + ", whose octets only --format reg can write";
    const bool fits =
        fit_xml({source.key, source.configuration, group.name, entry.value_name, value_of(entry)});
    return fits ? "" : not_for_xml;
}

/// An item without a value is disabled, because otherwise it would empty the value on every machine.
std::string item(const TemplateSource& source, const TemplateEntry& entry) {
    const std::string name = xml(entry.value_name);
    const bool is_default = entry.value_name.empty();
    const Action action = entry.value && !entry.value->text ? removal : update;
    const std::string type = entry.value && !entry.value->type.empty() ? entry.value->type : "REG_SZ";
    return "    <Registry clsid=\"{9CD4B2F4-923D-47f5-A062-E897DD1DAD50}\" name=\"" + name + "\" status=\"" +
           name + "\" image=\"" + action.image + "\" changed=\"" + always + "\" uid=\"" +
           identifier(source.key + "\\\n" + entry.value_name) + "\" disabled=\"" + (entry.value ? "0" : "1") +
           "\"><Properties action=\"" + action.letter + "\" displayDecimal=\"0\" default=\"" +
           (is_default ? "1" : "0") + "\" hive=\"HKEY_LOCAL_MACHINE\" key=\"" + xml(source.key) +
           "\" name=\"" + name + "\" type=\"" + type + "\" value=\"" + xml(value_of(entry)) +
           "\"/></Registry>\n";
}

std::string collection(const TemplateSource& source, std::size_t number) {
    const TemplateGroup& group = source.groups[number];
    const std::string name = xml(group.name.empty() ? source.configuration : group.name);
    std::string text = "  <Collection clsid=\"{53B533F5-224C-47e3-B01B-CA3B3F3FF4BF}\" name=\"" + name +
                       "\" changed=\"" + always + "\" uid=\"" +
                       identifier(source.key + "\n" + std::to_string(number)) + "\">\n";
    for (const TemplateEntry& entry : group.entries)
        text += item(source, entry);
    return text + "  </Collection>\n";
}

} // namespace

void drop_what_items_lack(TemplateSource& source) { leave_out_if(source, why_not); }

std::string write_preferences(const TemplateSource& source) {
    std::string text = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                       "<RegistrySettings clsid=\"{A3CCFC41-DFDB-43a5-8D26-0FE8B954DA51}\">\n";
    for (std::size_t i = 0; i < source.groups.size(); ++i)
        text += collection(source, i);
    return text + "</RegistrySettings>\n";
}

} // namespace ctl
