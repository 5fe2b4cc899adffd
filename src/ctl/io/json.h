#pragma once
/// JSON of our own, for callers to read; its members stay in the order in which they were put.
#include <nlohmann/json.hpp>

#include <string>
#include <utility>

namespace ctl {

using Json = nlohmann::ordered_json;

/// Adds a member that the object does not have yet, without a search for duplicates, which would make large
/// objects quadratic.
inline void add_member(Json& object, std::string name, Json value) {
    object.get_ref<Json::object_t&>().emplace_back(std::move(name), std::move(value));
}

/// Indented, with a line end, and in ASCII alone: PowerShell 5.1 decodes what a program prints by another
/// code page. Texts that are no UTF-8 get replacement characters.
std::string to_text(const Json& json);
/// In one line, with its end.
std::string to_line(const Json& json);

} // namespace ctl
