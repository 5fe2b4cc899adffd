#pragma once
/// The settings that a spec file describes, as entries, and the registry key and service that they belong to.
#include "pages/base_entry.h"
#include "store/common_reg_key.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// A named list of entries, in the order of the spec file.
struct Group {
    /// Empty for the implicit group of entries that stand before any group start; it gets no tree node.
    std::string name;
    std::vector<OwnedEntry> entries;
};

/// Memory for the entries of one configuration, which are destroyed together. They follow one another,
/// because a hundred thousand separate allocations would take longer.
class EntryMemory {
public:
    /// Memory for an object of this size, which is valid as long as this EntryMemory exists.
    void* take(std::size_t size) {
        if (used_ + size > block_size) {
            blocks_.push_back(std::make_unique_for_overwrite<std::byte[]>(block_size));
            used_ = 0;
        }
        void* const place = &blocks_.back()[used_];
        used_ += size;
        return place;
    }

private:
    static constexpr std::size_t block_size = 32'768;

    std::vector<std::unique_ptr<std::byte[]>> blocks_;
    std::size_t used_ = block_size;
};

class Settings {
public:
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    /// The first entry, in group and entry order, whose title is exactly `title`. Throws a text when there is
    /// none.
    BaseEntry& entry_by_title(const std::string& title) const;
    /// The value of that entry. Throws a text when the entry has no registry value.
    CommonRegKey& value_by_title(const std::string& title) const;
    /// That value's current text.
    std::string text_by_title(const std::string& title) const;
    /// That value's current text as a decimal number. Throws a text when it is none.
    std::int32_t integer_by_title(const std::string& title) const;

    /// If true, only the parts that the connection test needs are built, and no value is read.
    const bool connectionTestOnly;
    /// The spec file as it was read. The entries' titles, help texts and value names are parts of it.
    std::string spec_text;
    /// The key below HKEY_LOCAL_MACHINE under which all values of this configuration live.
    std::string registryPath;
    std::string name;
    /// The agent's Windows service; empty when the configuration has none.
    std::string serviceName;
    EntryMemory entry_memory;
    std::vector<Group> groups;
    bool offersConnectionTest = false;
    /// Titles of the entries that hold the connection test's parameters.
    std::string agent_name_title;
    std::string agent_domain_title;
    std::string server_list_title;
    std::string default_port_title;

protected:
    explicit Settings(bool connection_test_only) : connectionTestOnly(connection_test_only) {}
    ~Settings() = default;
};
