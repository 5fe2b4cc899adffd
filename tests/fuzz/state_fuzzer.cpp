/// State files: a simple reading of the JSON must accept the same files, with the same values.
#include "ctl/change/state_file.h"
#include "ctl/failure.h"
#include "fuzz/input.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace {

using nlohmann::json;

/// What a value is by the rules: a text, or nothing if it must not exist. A number or boolean as it is
/// written.
json plain(const json& value) {
    if (value.is_string() || value.is_null())
        return value;
    return value.is_boolean() ? json(value.get<bool>() ? "true" : "false") : json(value.dump());
}

void require_same(const std::vector<ctl::DesiredValue>& desired, const json& values) {
    std::size_t without_value = 0;
    for (const auto& [name, value] : values.items())
        without_value += value.is_object() && !value.contains("value") ? 1 : 0;
    require(desired.size() + without_value == values.size());
    for (const ctl::DesiredValue& each : desired) {
        const json& value = values.at(each.name);
        const json text = plain(value.is_object() ? value.at("value") : value);
        require(text == (each.text ? json(*each.text) : json()));
    }
}

void require_same(const ctl::State& state, const std::string& octets) {
    const json tree = json::parse(octets);
    require(tree.at("schema") == ctl::schema_version && tree.size() == 2);
    const json& configurations = tree.at("configurations");
    require(configurations.size() == state.size());
    for (const ctl::DesiredConfiguration& each : state)
        require_same(each.values, configurations.at(each.name).at("values"));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string octets(reinterpret_cast<const char*>(data), size);
    try {
        require_same(ctl::read_state(octets), octets);
    } catch (const ctl::Failure& failure) {
        require(failure.code == ctl::ExitCode::invalid && !failure.text.empty());
    }
    return 0;
}
