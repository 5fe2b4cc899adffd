#pragma once
/// How the two files of a policy template call each other's parts. The prefixes keep the names of different
/// parts apart, whatever an entry is called.
#include <string>

namespace ctl::admx {

inline constexpr const char* name_space =
    "http://schemas.microsoft.com/GroupPolicy/2006/07/PolicyDefinitions";
inline constexpr const char* revision = "1.0";
inline constexpr const char* whole = "Configuration";
inline constexpr const char* supported = "Supported";

inline std::string category(std::size_t group) { return "Group_" + std::to_string(group + 1); }
inline std::string title(const std::string& id) { return "Title_" + id; }
inline std::string help(const std::string& id) { return "Help_" + id; }
inline std::string element(const std::string& id) { return "Value_" + id; }
inline std::string item(std::size_t option, const std::string& id) {
    return "Item_" + std::to_string(option + 1) + "_" + id;
}
inline std::string string_reference(const std::string& id) { return "\"$(string." + id + ")\""; }
inline std::string presentation_reference(const std::string& id) { return "\"$(presentation." + id + ")\""; }

} // namespace ctl::admx
