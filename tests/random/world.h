#pragma once
/// What a session finds: spec files and a registry, made up at random.
#include "platform/win32.h"
#include "random/chance.h"
#include "support/kinds.h"

#include <optional>
#include <string>
#include <vector>

namespace random_user {

struct RegistryData {
    DWORD type;
    std::string bytes;
};

struct Entry {
    const PageKind* kind;
    std::string title;
    std::string help;
    std::string value_name;
    std::vector<std::string> options;
    /// What the registry holds at first; nothing when the value is missing.
    std::optional<RegistryData> data;
    /// Of a removal: whether there is a key to remove.
    bool key_exists;
};

struct Group {
    std::string name;
    std::vector<Entry> entries;
};

struct SpecFile {
    /// The name of the registry value that lists it.
    std::string value_name;
    bool is_missing;
    bool old_syntax;
    const char* line_end;
    std::string key;
    std::string name;
    std::string service;
    std::vector<Group> groups;
    /// The titles that the connection test looks up, if the file offers one.
    std::optional<std::vector<std::string>> test_titles;
};

struct World {
    std::vector<SpecFile> files;
    std::vector<std::string> ports;
};

/// `ports`: the machine's, where they cannot be chosen.
World make_world(Chance& chance, const std::vector<std::string>& ports);
/// Lists of serial ports to choose from, for a machine that lets them be chosen.
std::vector<std::string> make_ports(Chance& chance);
std::string text_of(const SpecFile& file);
/// Puts the values and keys that the files name into the registry.
void fill_registry(const World& world);

} // namespace random_user
