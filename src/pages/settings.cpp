#include "pages/settings.h"

#include "specfile/spec_text.h"

BaseEntry& Settings::entry_by_title(const std::string& title) const {
    for (const Group& group : groups) {
        for (const OwnedEntry& entry : group.entries) {
            if (entry->title() == title)
                return *entry;
        }
    }
    throw missing_title(title);
}

CommonRegKey& Settings::value_by_title(const std::string& title) const {
    auto* const value = dynamic_cast<CommonRegKey*>(&entry_by_title(title));
    if (value == nullptr)
        throw std::string(title_without_value);
    return *value;
}

std::string Settings::text_by_title(const std::string& title) const { return value_by_title(title).value(); }

std::int32_t Settings::integer_by_title(const std::string& title) const {
    return integer_found(text_by_title(title));
}
