#pragma once
/// One configuration of the agent: the settings that a spec file describes, and what the main window records
/// about them.
#include "pages/settings.h"
#include "platform/win32.h"

#include <map>
#include <memory>
#include <set>
#include <string>

struct SpecError;

class Configuration : public Settings {
public:
    /// Reads and parses the spec file at `path`; `registry_value_name` becomes the name of an old-syntax
    /// file. A file that cannot be opened gives a configuration without name and groups. With
    /// `connection_test_only`, only the parts that the connection test needs are built, and no value is read.
    /// Throws a text (std::string) when the file cannot be parsed or a value's key cannot be read; with
    /// `connection_test_only` also when the file cannot be opened.
    Configuration(const std::string& registry_value_name, const std::string& path, bool connection_test_only);
    /// A configuration without name and groups, for build_settings to fill.
    explicit Configuration(bool connection_test_only) : Settings(connection_test_only) {}

    /// Takes the shown page's values and returns whether any entry has an unsaved change. The cost does not
    /// depend on the number of entries.
    bool has_changes();

    /// The entry of each tree item that has one.
    std::map<HTREEITEM, BaseEntry*> entry_items;
    /// The tree items without an entry: the root and the groups.
    std::set<HTREEITEM> node_items;
    /// The entry whose page is on the screen, or null.
    BaseEntry* shown_entry = nullptr;
    /// The entries that had unsaved changes when their pages were left.
    std::set<BaseEntry*> changed_entries;
};

/// The loaded configurations, by name and in byte-wise order of the names.
inline std::map<std::string, std::unique_ptr<Configuration>> configurations;

/// Shows an error in a spec file that does not end the tool.
void show_spec_error(const SpecError& error);
