#include "spec/configuration.h"

#include "error/exceptions.h"
#include "error/text.h"

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
