#pragma once
/// Writes JSON for other programs, and strictly reads JSON that others wrote.
#include <nlohmann/json.hpp>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ctl {

/// Its members stay in the order in which they were added.
using Json = nlohmann::ordered_json;

/// Adds a member that the object does not have yet, without a search for duplicates, which would make large
/// objects quadratic.
inline void add_member(Json& object, std::string name, Json value) {
    object.get_ref<Json::object_t&>().emplace_back(std::move(name), std::move(value));
}

/// Indented, with a line end, and in ASCII only, because PowerShell 5.1 decodes a program's output with
/// another code page. Octets that are not UTF-8 become replacement characters.
std::string to_text(const Json& json);
/// In one line, with its end.
std::string to_line(const Json& json);

inline constexpr std::size_t longest_json = std::size_t{16} * 1024 * 1024;
inline constexpr std::size_t deepest_json = 8;

struct JsonMember;

/// JSON that others wrote, read strictly.
struct JsonTree {
    enum class Kind { null, boolean, whole_number, fraction, text, object, array };

    Kind kind = Kind::null;
    /// A text, or a number or boolean as JSON writes it.
    std::string text;
    /// Of an object, in order; those of an array have no names.
    std::vector<JsonMember> members;

    /// The member of this name; null if there is none.
    const JsonTree* find(std::string_view name) const;
};

struct JsonMember {
    std::string name;
    JsonTree value;
};

/// Accepts only UTF-8, no name twice in an object, and neither deeper nesting nor longer texts than the
/// limits above. Throws Failure of the code `invalid` that says what is wrong and where.
JsonTree read_json(std::string_view octets);

} // namespace ctl
