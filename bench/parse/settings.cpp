#include "parse/settings.h"

#include <algorithm>
#include <iterator>
#include <malloc.h>

namespace parse {
namespace {

constexpr int entries_per_group = 50;
constexpr std::string_view kind_names[] = {"String", "Integer", "Boolean", "Directory"};
constexpr char key[] = "SOFTWARE\\Vendor\\Agent";
constexpr char help[] = "What this setting is good for.";

struct Texts {
    std::string title;
    std::string value_name;
    std::string_view type;
};
Texts texts_of(int entry) {
    return {"Setting number " + std::to_string(entry), "Value" + std::to_string(entry),
            kind_names[static_cast<std::size_t>(entry) % std::size(kind_names)]};
}

std::string group_name(int entry) { return "Group " + std::to_string(entry / entries_per_group); }
bool begins_group(int entry) { return entry % entries_per_group == 0; }

Entry& last_entry(Model& model) { return *model.groups.back().entries.back(); }

void add_entry(Model& model, std::string_view title, std::string_view value_name) {
    Entry& entry = *model.groups.back().entries.emplace_back(std::make_unique<Entry>());
    entry.title = title;
    entry.value_name = value_name;
    // The stand-in for the registry returns the value's name for every value.
    entry.value = value_name;
    entry.stored_value = entry.value;
}

bool take_kind(Model& model, std::string_view type) {
    const auto* const found = std::find(std::begin(kind_names), std::end(kind_names), type);
    if (found == std::end(kind_names))
        return false;
    last_entry(model).kind = static_cast<Kind>(found - std::begin(kind_names));
    return true;
}

bool take_of_configuration(Model& model, std::string_view name, std::string_view value) {
    std::string* const target = name == "key"       ? &model.key
                                : name == "name"    ? &model.name
                                : name == "service" ? &model.service
                                                    : nullptr;
    if (target == nullptr)
        return false;
    *target = value;
    return true;
}

} // namespace

std::string spec_text(int entries) {
    std::string text = std::string("\\") + key + "\nAgent\nAgentService\n";
    for (int i = 0; i < entries; ++i) {
        const Texts of = texts_of(i);
        if (begins_group(i))
            text += "!" + group_name(i) + "\n";
        text += "$" + of.title + "\n" + of.value_name + "\n" + help + "\n" + std::string(of.type) + "\n";
    }
    return text;
}

std::string ini_text(int entries) {
    std::string text = std::string("[Configuration]\nkey=") + key + "\nname=Agent\nservice=AgentService\n";
    for (int i = 0; i < entries; ++i) {
        const Texts of = texts_of(i);
        if (begins_group(i))
            text += "[" + group_name(i) + "]\ngroup=yes\n";
        text += "[" + of.title + "]\nvalue=" + of.value_name + "\nhelp=" + help +
                "\ntype=" + std::string(of.type) + "\n";
    }
    return text;
}

Model expected_model(int entries) {
    Model model{key, "Agent", "AgentService", {}};
    for (int i = 0; i < entries; ++i) {
        const Texts of = texts_of(i);
        if (begins_group(i))
            model.groups.push_back({group_name(i), {}});
        model.groups.back().entries.push_back(std::make_unique<Entry>(
            Entry{of.title, help, static_cast<Kind>(i % 4), of.value_name, of.value_name, of.value_name}));
    }
    return model;
}

bool take(Model& model, std::string_view section, std::string_view name, std::string_view value) {
    if (name == "value") {
        add_entry(model, section, value);
    } else if (name == "help") {
        last_entry(model).help = value;
    } else if (name == "type") {
        return take_kind(model, value);
    } else if (name == "group") {
        model.groups.emplace_back().name = section;
    } else {
        return take_of_configuration(model, name, value);
    }
    return true;
}

std::string_view name_of(Kind kind) { return kind_names[static_cast<std::size_t>(kind)]; }

std::string description(const Model& model) {
    std::string text = model.key + '|' + model.name + '|' + model.service + '\n';
    for (const Group& group : model.groups) {
        text += group.name + '\n';
        for (const auto& entry : group.entries)
            text += entry->title + '|' + entry->help + '|' + std::string(name_of(entry->kind)) + '|' +
                    entry->value + '\n';
    }
    return text;
}

std::size_t allocated() {
    const auto use = mallinfo2();
    return use.uordblks + use.hblkhd;
}

} // namespace parse
