#pragma once
/// A file that Windows' registry editor imports. It is UTF-16 with its mark: without one the import fails,
/// and UTF-8 is taken for the machine's code page.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ctl {

/// A type's name in the registry: "REG_DWORD"; "type 4660" for one that has none.
std::string type_name(std::uint32_t type);
/// The type of such a name.
std::optional<std::uint32_t> type_named(const std::string& name);

class RegFile {
public:
    RegFile();

    /// Begins the values of a key below HKEY_LOCAL_MACHINE. All texts are UTF-8.
    void key(std::string_view path);
    void text(std::string_view name, std::string_view value);
    /// A text as the registry holds it, in UTF-16, with whatever end.
    void utf16_text(std::string_view name, const std::string& octets);
    /// A value of any type, by the octets that the registry holds; texts among them are UTF-16.
    void raw(std::string_view name, std::uint32_t type, std::string_view octets);
    /// The import removes the value.
    void absent(std::string_view name);
    /// The import passes it over.
    void comment(std::string_view words);

    /// The whole file.
    std::string octets() const;

private:
    void name(std::string_view value_name);
    void hex(std::string_view prefix, std::string_view octets);

    std::string text_;
};

} // namespace ctl
