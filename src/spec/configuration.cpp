#include "spec/configuration.h"

#include "error/exceptions.h"
#include "error/text.h"
#include "spec/building.h"
#include "window/boxes.h"

Configuration::Configuration(const std::string& registry_value_name, const std::string& path,
                             bool connection_test_only)
    : connectionTestOnly(connection_test_only) {
    std::optional<std::string> file = read_spec_file(path);
    if (!file && connectionTestOnly)
        throw "Unable to open file: " + path;
    if (file)
        build_configuration(*this, registry_value_name, std::move(*file), show_spec_error);
}

BaseEntry& Configuration::entry_by_title(const std::string& title) const {
    for (const Group& group : groups) {
        for (const OwnedEntry& entry : group.entries) {
            if (entry->title() == title)
                return *entry;
        }
    }
    throw "Did not find anything with the title \"" + title + "\"";
}

CommonRegKey& Configuration::value_by_title(const std::string& title) const {
    auto* const value = dynamic_cast<CommonRegKey*>(&entry_by_title(title));
    if (value == nullptr)
        throw std::string("Found title, but it is not a CommonRegKey");
    return *value;
}

std::string Configuration::text_by_title(const std::string& title) const {
    return value_by_title(title).value();
}

std::int32_t Configuration::integer_by_title(const std::string& title) const {
    const std::string text = text_by_title(title);
    try {
        return parse_int(text);
    } catch (const error::EParseError& failure) {
        throw "Error reading value: " + failure.full_text();
    }
}

bool Configuration::has_changes() const {
    if (shown_entry != nullptr)
        shown_entry->takeValue();
    return (shown_entry != nullptr && shown_entry->changed()) || !changed_entries.empty();
}

void show_spec_error(const SpecError& error) {
    show_box({.text = error.text, .caption = "Error", .style = MB_OK | MB_ICONERROR});
}
