#include "ctl/diff/formats.h"
#include "ctl/io/console.h"

namespace ctl {
namespace {

Json json_of(const Difference& difference) {
    return {{"desired", json_of(difference.desired)}, {"current", json_of(difference.current)}};
}

Json json_of(const std::vector<Difference>& differences) {
    Json configurations = Json::object();
    for (const Difference& each : differences) {
        Json& values = configurations[each.configuration];
        if (values.is_null())
            values = Json::object();
        add_member(values, each.value, json_of(each));
    }
    return configurations;
}

Json json_of(const MachineDifferences& machine) {
    Json json{{"machine", machine.machine},
              {"inSync", machine.in_sync()},
              {"restartPending", machine.restart_pending},
              {"problem", machine.problem.empty() ? Json() : Json(machine.problem)},
              {"differences", json_of(machine.differences)}};
    if (machine.other_spec_file)
        json["otherSpecFile"] = true;
    return json;
}

/// As a member of the whole, which is indented by two.
std::string indented(const Json& json) {
    std::string text = "    ";
    for (const char byte : json.dump(2, ' ', true, Json::error_handler_t::replace))
        text += byte == '\n' ? std::string("\n    ") : std::string(1, byte);
    return text;
}

} // namespace

void print_json(const Fleet& fleet) {
    const bool in_sync = fleet.in_sync == fleet.machines.size();
    print(std::string("{\n  \"schema\": ") + std::to_string(schema_version) +
          ",\n  \"inSync\": " + (in_sync ? "true" : "false") + ",\n  \"machines\": [");
    for (const MachineDifferences& each : fleet.machines)
        print((&each == fleet.machines.data() ? "\n" : ",\n") + indented(json_of(each)));
    print("\n  ]\n}\n");
}

} // namespace ctl
