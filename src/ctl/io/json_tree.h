#pragma once
/// JSON that others wrote, read strictly: UTF-8 only, no name twice in an object, not deeper than anything of
/// ours is, and not larger.
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ctl {

inline constexpr std::size_t longest_json = std::size_t{16} * 1024 * 1024;
inline constexpr std::size_t deepest_json = 8;

struct JsonMember;

struct JsonTree {
    enum class Kind { null, boolean, whole_number, fraction, text, object, array };

    Kind kind = Kind::null;
    /// A text; or a number or boolean as JSON writes it.
    std::string text;
    /// Of an object in its order; an array's have no names.
    std::vector<JsonMember> members;

    /// The member of this name; null when there is none.
    const JsonTree* find(std::string_view name) const;
};

struct JsonMember {
    std::string name;
    JsonTree value;
};

/// Throws Failure of the code `invalid`, with the words for what is wrong and where.
JsonTree read_json(std::string_view octets);

} // namespace ctl
