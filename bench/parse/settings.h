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
    /// What the registry holds: as the user edits it, and as it was read.
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
/// What is to be built from both.
Model expected_model(int entries);

/// Takes one "name = value" of an INI file into the model. What a section holds tells what it is of. False
/// for a name or type that is not known.
bool take(Model& model, std::string_view section, std::string_view name, std::string_view value);

/// Everything that a model holds, a line an entry.
std::string description(const Model& model);
std::string_view name_of(Kind kind);

/// One contestant. What a function builds is freed before it returns, unless `described` is given: then it
/// gets what was built.
struct Parser {
    const char* name;
    void (*from_text)(const std::string& text, std::string* described);
    void (*from_file)(const std::string& path, std::string* described);
    /// The bytes that what is built from a text occupies.
    std::size_t (*memory)(const std::string& text);
};

/// The bytes that the process has allocated.
std::size_t allocated();

extern const Parser our_parser;
extern const Parser inih_parser;
extern const Parser simple_ini_parser;
extern const Parser glib_parser;

} // namespace parse
