#include "pages/settings.h"

#include "base/exceptions.h"
#include "base/text.h"

BaseEntry& Settings::entry_by_title(const std::string& title) const {
    for (const Group& group : groups) {
        for (const OwnedEntry& entry : group.entries) {
            if (entry->title() == title)
                return *entry;
        }
    }
    throw "Did not find anything with the title \"" + title + "\"";
}

CommonRegKey& Settings::value_by_title(const std::string& title) const {
    auto* const value = dynamic_cast<CommonRegKey*>(&entry_by_title(title));
    if (value == nullptr)
        throw std::string("Found title, but it is not a CommonRegKey");
    return *value;
}

std::string Settings::text_by_title(const std::string& title) const { return value_by_title(title).value(); }

std::int32_t Settings::integer_by_title(const std::string& title) const {
    const std::string text = text_by_title(title);
    try {
        return parse_int(text);
    } catch (const error::EParseError& failure) {
        throw "Error reading value: " + failure.full_text();
    }
}
