#pragma once
/// The same settings as a spec file and as an INI file, and the model that the INI parsers of the comparison
/// build from them: typed entries with owned texts, in groups.
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace parse {

enum class Kind { string, integer, boolean, directory };

struct Entry {
    std::string title;
    std::string help;
    Kind kind = Kind::string;
    std::string value_name;
    /// The value in the registry: as the user edits it, and as it was read.
    std::string value;
    std::string stored_value;
};
struct Group {
    std::string name;
    std::vector<std::unique_ptr<Entry>> entries;
};
struct Model {
    std::string key;
    std::string name;
    std::string service;
    std::vector<Group> groups;
};

/// A new spec file with this many entries of all kinds, in groups of fifty.
std::string spec_text(int entries);
/// The same as an INI file: a section for the configuration, one for each group and one for each entry.
std::string ini_text(int entries);
/// The model that both describe.
Model expected_model(int entries);

/// Adds one "name = value" of an INI file to the model. The names in a section show what it describes. False
/// for an unknown name or type.
bool take(Model& model, std::string_view section, std::string_view name, std::string_view value);

/// A description of the whole model, with one line for each entry.
std::string description(const Model& model);
std::string_view name_of(Kind kind);

/// One parser. A function frees what it builds before it returns; if `described` is given, it first writes
/// the description there.
struct Parser {
    const char* name;
    void (*from_text)(const std::string& text, std::string* described);
    void (*from_file)(const std::string& path, std::string* described);
    /// The number of bytes of the model that is built from a text.
    std::size_t (*memory)(const std::string& text);
};

/// The bytes that the process has allocated.
std::size_t allocated();

extern const Parser our_parser;
extern const Parser inih_parser;
extern const Parser simple_ini_parser;
extern const Parser glib_parser;

} // namespace parse
