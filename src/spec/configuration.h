#pragma once
/// One configuration of the agent: what a spec file describes, and what the main window notes about it.
#include "platform/win32.h"
#include "spec/group.h"
#include "store/common_reg_key.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

struct SpecError;

class Configuration {
public:
    /// Reads and parses the spec file at `path`; `registry_value_name` becomes the name of an old-syntax
    /// file. A file that cannot be opened gives a configuration without name and groups. With
    /// `connection_test_only` only what the connection test needs is built, and no value is read.
    /// Throws a text (std::string) when the file cannot be parsed or a value's key cannot be read; with
    /// `connection_test_only` also when the file cannot be opened.
    Configuration(const std::string& registry_value_name, const std::string& path, bool connection_test_only);
    /// A configuration without name and groups, for build_configuration to fill.
    explicit Configuration(bool connection_test_only) : connectionTestOnly(connection_test_only) {}
    Configuration(const Configuration&) = delete;
    Configuration& operator=(const Configuration&) = delete;
    ~Configuration() = default;

    /// The first entry, in group and entry order, whose title is exactly `title`. Throws a text when there is
    /// none.
    BaseEntry& entry_by_title(const std::string& title) const;
    /// The value of that entry. Throws a text when the entry has no registry value.
    CommonRegKey& value_by_title(const std::string& title) const;
    /// That value's current text.
    std::string text_by_title(const std::string& title) const;
    /// That value's current text as a decimal number. Throws a text when it is none.
    std::int32_t integer_by_title(const std::string& title) const;

    /// Takes the shown page's values and tells whether any entry holds an unsaved change. The cost does not
    /// depend on the number of entries.
    bool has_changes() const;

    const bool connectionTestOnly;
    /// The spec file as it was read. The entries' titles, help texts and value names stand in it.
    std::string spec_text;
    /// The key below HKEY_LOCAL_MACHINE under which all values of this configuration live.
    std::string registryPath;
    std::string name;
    /// The agent's Windows service; empty when the configuration has none.
    std::string serviceName;

    /// The main window's bookkeeping: which entry a tree item shows,
    std::map<HTREEITEM, BaseEntry*> entry_items;
    /// which tree items show none (the root and the groups),
    std::set<HTREEITEM> node_items;
    /// whose page is on screen, or null,
    BaseEntry* shown_entry = nullptr;
    /// and which entries held unsaved changes when their pages were left.
    std::set<BaseEntry*> changed_entries;

    std::vector<Group> groups;
    bool offersConnectionTest = false;
    /// Titles of the entries that hold the connection test's parameters.
    std::string agent_name_title;
    std::string agent_domain_title;
    std::string server_list_title;
    std::string default_port_title;
};

/// Shows an error of a spec file that the tool goes on in spite of.
void show_spec_error(const SpecError& error);
