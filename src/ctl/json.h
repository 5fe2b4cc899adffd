#pragma once
/// JSON of our own, for callers to read; its members stay in the order in which they were put.
#include <nlohmann/json.hpp>

#include <string>

namespace ctl {

using Json = nlohmann::ordered_json;

/// For people too: indented, with a line end. Texts that are no UTF-8 get replacement characters.
std::string to_text(const Json& json);
/// In one line, with its end.
std::string to_line(const Json& json);

} // namespace ctl
