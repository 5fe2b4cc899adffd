#include "random/model.h"

#include "support/registry.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <limits>

namespace random_user {
namespace {

/// Longer texts are cut.
constexpr std::size_t longest = 1023;

std::string lower(std::string text) {
    for (char& each : text)
        each = static_cast<char>(std::tolower(static_cast<unsigned char>(each)));
    return text;
}

std::string before_zero(const std::string& bytes) { return bytes.substr(0, bytes.find('\0')); }

/// A value of 1024 bytes or more is not read; of any other, everything before its first zero.
std::string stored(const Entry& entry) {
    if (!entry.data || entry.data->bytes.size() > 1024)
        return "";
    return before_zero(entry.data->bytes.substr(0, longest));
}

/// As C reads "%i".
std::string as_number(const std::string& text) {
    char* end = nullptr;
    const long long number = std::strtoll(text.c_str(), &end, 0);
    if (end == text.c_str())
        return "";
    return std::to_string(
        std::clamp<long long>(number, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

Sight choice_of(const std::vector<std::string>& options, const std::string& text) {
    const auto last = std::find(options.rbegin(), options.rend(), text);
    return last == options.rend() ? "none" : std::to_string(options.rend() - last - 1);
}

Sight first_sight(const Entry& entry) {
    switch (entry.kind->view) {
    case View::text: return stored(entry);
    case View::number: return as_number(stored(entry));
    case View::check: return lower(stored(entry)) == "true" ? "ticked" : "unticked";
    case View::list: return choice_of(entry.options, stored(entry));
    case View::removal: return entry.key_exists ? "unticked" : "gone";
    default: return "";
    }
}

bool has_value(const Entry& entry) {
    return entry.kind->view != View::removal && entry.kind->view != View::nothing;
}

bool is_number(const std::string& text) {
    char* end = nullptr;
    std::strtol(text.c_str(), &end, 10);
    return *end == '\0';
}

/// By name; of two with the same name the one that is listed first.
std::vector<const SpecFile*> in_order(const std::vector<SpecFile>& files) {
    std::map<std::string, const SpecFile*> listed;
    for (const SpecFile& file : files)
        listed.emplace(file.value_name, &file);
    std::map<std::string, const SpecFile*> named;
    for (const auto& [value_name, file] : listed)
        named.emplace(file->is_missing ? "" : file->name, file);
    std::vector<const SpecFile*> loaded;
    for (const auto& [name, file] : named) {
        if (!file->is_missing)
            loaded.push_back(file);
    }
    return loaded;
}

std::vector<const Entry*> entries_of(const SpecFile& file) {
    std::vector<const Entry*> entries;
    for (const Group& group : file.groups) {
        for (const Entry& entry : group.entries)
            entries.push_back(&entry);
    }
    return entries;
}

std::string shown(const std::optional<RawValue>& value) {
    return value ? "type " + std::to_string(value->type) + " \"" + before_zero(value->bytes) + "\" (" +
                       std::to_string(value->bytes.size()) + " bytes)"
                 : "nothing";
}

} // namespace

Model::Model(const World& world) : world_(world), loaded_(in_order(world.files)) {
    for (const SpecFile* file : loaded_) {
        if (file->groups.empty())
            continue;
        items_.push_back({file->name, 0, file, nullptr});
        for (const Group& group : file->groups) {
            if (!group.name.empty())
                items_.push_back({group.name, 1, file, nullptr});
            for (const Entry& entry : group.entries)
                items_.push_back({entry.title, group.name.empty() ? 1 : 2, file, &entry});
        }
    }
}

Sight Model::expected(const Entry& entry) const {
    const auto found = seen_.find(&entry);
    if (found == seen_.end())
        return first_sight(entry);
    const Sight& kept = found->second;
    switch (entry.kind->view) {
    case View::text: return kept.substr(0, longest);
    case View::number: return as_number(kept.substr(0, longest));
    // Of options with the same text the last is shown, whichever was chosen.
    case View::list:
        return kept == "none" ? kept : choice_of(entry.options, entry.options.at(std::stoul(kept)));
    default: return kept;
    }
}

std::string Model::value(const Entry& entry) const {
    const auto found = seen_.find(&entry);
    if (found == seen_.end())
        return stored(entry);
    const Sight& sight = found->second;
    switch (entry.kind->view) {
    case View::text: return sight.substr(0, longest);
    case View::number: return as_number(sight.substr(0, longest));
    case View::check: return sight == "ticked" ? "true" : "false";
    case View::list: return sight == "none" ? stored(entry) : entry.options.at(std::stoul(sight));
    default: return "";
    }
}

bool Model::changed(const Entry& entry) const {
    if (has_value(entry))
        return value(entry) != stored(entry);
    return entry.kind->view == View::removal && expected(entry) == "ticked";
}

bool Model::is_changed_by_a_look(const Entry& entry) const {
    Model looked = *this;
    looked.see(entry, expected(entry));
    return looked.changed(entry) != changed(entry);
}

bool Model::has_changes() const {
    return std::any_of(loaded_.begin(), loaded_.end(), [this](const SpecFile* file) {
        const auto entries = entries_of(*file);
        return std::any_of(entries.begin(), entries.end(),
                           [this](const Entry* each) { return changed(*each); });
    });
}

std::optional<std::string> Model::lookup_failure(const SpecFile& file, const std::string& title,
                                                 bool must_be_number) const {
    for (const Entry* entry : entries_of(file)) {
        if (entry->title != title)
            continue;
        if (!has_value(*entry))
            return "Found title, but it is not a CommonRegKey";
        if (must_be_number && !is_number(value(*entry)))
            return "Error reading value: ";
        return std::nullopt;
    }
    return "Did not find anything with the title \"" + title + "\"";
}

std::optional<std::string> Model::test_failure(const SpecFile& file) const {
    for (std::size_t index = 0; index < 4; ++index) {
        if (auto failure = lookup_failure(file, file.test_titles->at(index), index == 3))
            return failure;
    }
    return std::nullopt;
}

std::optional<std::string> Model::scan_failure(const SpecFile& file) const {
    return lookup_failure(file, "Port", true);
}

std::string Model::fault(const SpecFile& file, const Entry& entry, bool was_applied) const {
    const bool is_written = was_applied && changed(entry);
    const std::string place = file.key + "\\" + entry.value_name;
    if (entry.kind->view == View::removal)
        return key_exists(place) == (entry.key_exists && !is_written) ? "" : place + ": the key is wrong\n";
    std::optional<RawValue> wanted;
    if (is_written) {
        wanted = RawValue{REG_SZ, value(entry) + '\0'};
    } else if (entry.data) {
        wanted = RawValue{entry.data->type, entry.data->bytes};
    }
    const auto found = raw_value(file.key, entry.value_name);
    return found == wanted ? "" : place + ": " + shown(found) + " instead of " + shown(wanted) + "\n";
}

std::string Model::registry_faults(bool was_applied) const {
    std::string faults;
    for (const SpecFile& file : world_.files) {
        const bool is_loaded = std::find(loaded_.begin(), loaded_.end(), &file) != loaded_.end();
        for (const Entry* entry : entries_of(file)) {
            if (entry->kind->view != View::nothing)
                faults += fault(file, *entry, was_applied && is_loaded);
        }
    }
    return faults;
}

} // namespace random_user
