#pragma once
/// Reads the text of a spec file, statement by statement. It creates no entries: this layer knows neither the
/// registry nor windows, and needs no Windows.
///
/// Spec files are line-oriented text with two syntaxes, which share the grammar of subspecs. There are no
/// comments and no escapes: every line is taken as it is.
///
///     new file                     old file
///       \SOFTWARE\Vendor\Agent       \SOFTWARE\Vendor\Agent       registry key
///       Agent                                                     name of the configuration
///       AgentService                                              service name, may be left out
///       !General                     !General                     start of a group
///       $Agent name                  $Port                        start of a subspec: its title
///       AgentName                    Port                         value name
///       The name of this agent.      The server's port.           help text
///       String                                                    type
///
/// Below the type line some types have further lines. A file whose second line starts with "!" or "$" is an
/// old one. In an old file subspecs may stand outside a group, the type line may be left out, which makes the
/// type "Integer", and the service name follows the subspecs of a group. Blank lines between groups are
/// skipped.
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// The part of a spec file's octets that is read: everything before the first octet 26 (0x1A), which ends a
/// text.
std::string_view up_to_end_of_text(std::string_view octets);

/// The bytes of the file at `path`, which other programs may have open, up to the end of its text; nothing
/// when the file cannot be opened or is a directory.
std::optional<std::string> read_spec_file(const std::string& path);

/// Lines of a text in memory. A line ends at a line feed; one carriage return right before it belongs to the
/// line end. The text after the last line feed is a line as well, unless it is empty.
class LineReader {
public:
    /// The text must outlive the reader and the lines read from it.
    explicit LineReader(std::string_view text) : rest_(text) {}

    /// True when no line is left.
    bool at_end() const { return rest_.empty(); }
    /// Looks ahead without reading.
    bool next_starts_with(char first) const { return !rest_.empty() && rest_.front() == first; }
    /// The next line without its end; empty at the end of the text.
    std::string_view read();
    /// The text that is not read yet.
    std::string_view rest() const { return rest_; }
    /// The number of the line that was read last.
    std::size_t line_number() const { return lines_read_; }

private:
    std::string_view rest_;
    std::size_t lines_read_ = 0;
};

/// A line without its end. Lines are counted from 1; one that the file does not have is empty and has the
/// number 0.
struct SpecLine {
    std::string_view text;
    std::size_t number = 0;
};

/// The form of a kind's values, for code that reads or writes them.
enum class ValueForm { none, text, integer, flag, option, server_list };

/// The syntax of a type line. The table in pages/building.cpp has the entry for it.
struct EntryKind {
    std::string_view type;
    /// The number of lines after the type line that always belong to the subspec, whatever they start with.
    std::size_t least_further = 0;
    /// The most lines after the type line; those beyond `least_further` end where the subspec ends.
    std::size_t most_further = 0;
    ValueForm form = ValueForm::none;
};

inline constexpr std::size_t any_number_of_lines = std::numeric_limits<std::size_t>::max();

/// Every kind of entry.
inline constexpr EntryKind entry_kinds[] = {
    {.type = "String", .form = ValueForm::text},
    {.type = "string", .form = ValueForm::text},
    {.type = "Integer", .form = ValueForm::integer},
    {.type = "Boolean", .form = ValueForm::flag},
    {.type = "Options", .most_further = any_number_of_lines, .form = ValueForm::option},
    // Its options are the machine's ports, which are not in the file.
    {.type = "COM", .form = ValueForm::text},
    {.type = "RemoveKey", .form = ValueForm::none},
    {.type = "SignalEvent", .form = ValueForm::none},
    {.type = "Directory", .form = ValueForm::text},
    {.type = "File", .most_further = 1, .form = ValueForm::text},
    {.type = "ServerList", .form = ValueForm::server_list},
    {.type = "ConnectionTest", .least_further = 4, .most_further = 4, .form = ValueForm::none},
};

/// The kind of this type line, which must match exactly; null when there is none.
const EntryKind* find_entry_kind(std::string_view type);

/// A subspec, the unit of a spec file from which one entry is made.
struct Declaration {
    /// The text of the file from the title on.
    std::string_view subspec;
    /// Without its "$".
    SpecLine title;
    /// For some types, the name of something other than a value: an event or a subkey.
    SpecLine value_name;
    SpecLine help_text;
    /// "Integer" with the number 0 where an old file leaves the line out.
    SpecLine type;
    std::vector<SpecLine> further;
    /// Null for an unknown type.
    const EntryKind* kind = nullptr;

    bool has_value() const { return kind != nullptr && kind->form != ValueForm::none; }
};

struct GroupStart {
    /// Without its "!".
    SpecLine name;
    /// Whether this is the unnamed group of subspecs outside all groups, whose line is that of the first
    /// subspec.
    bool is_implied = false;
};

struct ServiceName {
    SpecLine name;
};

/// An error in a line, with the text that is shown to the user.
struct SpecError {
    std::size_t line = 0;
    std::string text;
};

using SpecStatement = std::variant<ServiceName, GroupStart, Declaration, SpecError>;

/// Reads a spec file, statement by statement.
class SpecReader {
public:
    /// Reads the head of the file. The text must outlive the reader and all that is read from it.
    explicit SpecReader(std::string_view text);

    /// Without its leading backslashes.
    const SpecLine& registry_path() const { return registry_path_; }
    bool is_old() const { return is_old_; }
    /// The name that a new file gives itself.
    const SpecLine& name() const { return name_; }

    /// The next statement, valid until the next call; null at the end. After an error, reading continues with
    /// the next line.
    const SpecStatement* next();

private:
    bool read_group_level();
    void start_group(const SpecLine& name, bool is_implied);
    void take_service_name(const SpecLine& line);
    void read_declaration();
    Declaration& fresh_declaration();
    SpecLine read_line();
    SpecLine read_type();
    void read_further(Declaration& declaration);
    bool at_subspec_end() const;

    LineReader lines_;
    SpecLine registry_path_;
    SpecLine name_;
    bool is_old_ = false;
    bool is_in_group_ = false;
    bool has_service_name_ = false;
    SpecStatement statement_;
};

/// Nothing, unless the text is one line because its lines end with carriage returns alone.
std::optional<SpecError> line_end_error(std::string_view text);

/// The error for a declaration of an unknown kind.
SpecError unknown_type(const Declaration& declaration);

/// The errors of a lookup by title, as the connection test and a scan do it: no entry has the title, or the
/// entry has no registry value.
std::string missing_title(std::string_view title);
inline constexpr const char* title_without_value = "Found title, but it is not a CommonRegKey";
/// The value that was found, as a decimal number. Throws a text if it is none.
std::int32_t integer_found(const std::string& stored);
