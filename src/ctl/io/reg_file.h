#pragma once
/// Files that Windows' registry editor imports. They are UTF-16 with a byte order mark: without the mark the
/// import fails, and UTF-8 is taken for the machine's code page.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ctl {

/// A type's name in the registry: "REG_DWORD", or "type 4660" for a type without a name.
std::string type_name(std::uint32_t type);
/// The type of such a name; nothing for any other text.
std::optional<std::uint32_t> type_named(const std::string& name);

/// A value as the registry holds it, whatever its length; texts are UTF-16.
struct RegistryValue {
    std::uint32_t type;
    std::string octets;

    bool operator==(const RegistryValue&) const = default;
};

/// The octets as a text in UTF-8, without the zero that ends it; nothing if they are more than that text.
std::optional<std::string> plain_text(const RegistryValue& value);

/// Writes a file. Keys, names and texts are UTF-8.
class RegFile {
public:
    RegFile();

    /// Begins the values of a key below HKEY_LOCAL_MACHINE.
    void key(std::string_view path);
    void text(std::string_view name, std::string_view value);
    /// As a text or number if that reads back as the same octets, otherwise as octets.
    void value(std::string_view name, const RegistryValue& value);
    /// As octets, whatever the type.
    void raw(std::string_view name, const RegistryValue& value);
    /// Importing the file removes the value.
    void absent(std::string_view name);
    void comment(std::string_view words);

    /// The whole file.
    std::string octets() const;

private:
    void name(std::string_view value_name);

    std::string text_;
};

/// A value of a backup. The key, below HKEY_LOCAL_MACHINE, and the name are UTF-8.
struct SavedValue {
    std::string key;
    std::string name;
    /// Nothing if the value did not exist.
    std::optional<RegistryValue> value;
};

/// Reads the octets of a file that RegFile wrote. Throws Failure of the code `invalid`, with the line, for
/// everything else that a .reg file can hold.
std::vector<SavedValue> read_reg_file(std::string_view octets);

} // namespace ctl
