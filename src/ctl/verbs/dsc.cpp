#include "ctl/change/change.h"
#include "ctl/change/report.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/io/system.h"
#include "ctl/verbs/verbs.h"

#include <algorithm>

/// An instance is one configuration. Its name is the key, and an engine compares its values.
///
///     {"name":"Tavrin Agent","values":{"Port":"5000","Compress":true}}
namespace ctl {
namespace {

constexpr const char* instance_schema =
    R"({"$schema":"https://json-schema.org/draft/2020-12/schema","title":"A configuration of the Tavrin Agent",)"
    R"("type":"object","required":["name"],"additionalProperties":false,"properties":{)"
    R"("name":{"type":"string","title":"The configuration's name"},)"
    R"("service":{"type":"string","readOnly":true,"title":"The service that is restarted after a change"},)"
    R"("values":{"type":"object","title":"Texts by value name; null for a value that must not exist",)"
    R"("additionalProperties":{"type":["string","integer","boolean","null"]}},)"
    R"("_inDesiredState":{"type":["boolean","null"],"readOnly":true}}})"
    "\n";

DesiredConfiguration read_instance() {
    const auto octets = read_file("-", longest_json);
    if (!octets)
        throw Failure{ExitCode::failed, "the standard input cannot be read"};
    const JsonTree instance = read_json(*octets);
    if (instance.kind != JsonTree::Kind::object)
        throw Failure{ExitCode::invalid, "the instance is not an object"};
    refuse_unknown(instance, "the instance", {"name", "service", "values", "_inDesiredState"});
    const JsonTree* const values = instance.find("values");
    if (values != nullptr && values->kind != JsonTree::Kind::object)
        throw Failure{ExitCode::invalid, "\"values\" is not an object"};
    if (instance.find("name") == nullptr)
        throw Failure{ExitCode::invalid, "the instance has no member \"name\""};
    return {text_member(instance, "name"),
            {},
            values != nullptr ? read_values(*values) : std::vector<DesiredValue>()};
}

Json instance_of(const MachineConfiguration& configuration, Json values) {
    return {{"name", to_utf8(configuration.name)},
            {"service", to_utf8(configuration.service())},
            {"values", std::move(values)}};
}

/// Leaves out values that are too long to be read.
Json all_values(const MachineConfiguration& configuration) {
    const std::vector<StoredValue> stored = stored_values(configuration);
    Json values = Json::object();
    for (std::size_t i = 0; i < stored.size(); ++i) {
        const Declaration& declaration = configuration.spec.entries[i].declaration;
        if (declaration.has_value() && !stored[i].is_too_long)
            values.emplace(to_utf8(declaration.value_name.text), json_of(stored[i]));
    }
    return values;
}

enum class Moment { before, after };

/// Only the values that the instance names.
Json asked_values(const ConfigurationPlan& plan, Moment moment) {
    Json values = Json::object();
    for (const Change& each : plan.changes) {
        values[to_utf8(each.value_name())] =
            moment == Moment::after ? json_of_result(each) : json_of(each.before);
    }
    return values;
}

ExitCode get(const Arguments&) {
    const DesiredConfiguration desired = read_instance();
    const Machine machine = read_machine();
    const MachineConfiguration& configuration = configuration_named(machine, desired.name);
    print(to_line(instance_of(configuration, all_values(configuration))));
    return ExitCode::success;
}

ExitCode test_instance(const Arguments&) {
    const Machine machine = read_machine();
    const Plan plan = plan_state(machine, {read_instance()});
    Json instance = instance_of(*plan.front().configuration, asked_values(plan.front(), Moment::before));
    instance["_inDesiredState"] = is_in_sync(plan);
    print(to_line(instance));
    return ExitCode::success;
}

void tell(const ChangeResult& result) {
    if (!result.backup.empty())
        say("previous values saved to " + result.backup, Level::info);
    for (const ConfigurationPlan& each : result.plan) {
        if (each.is_restarted)
            say(restart_text(each), Level::info);
    }
}

/// Prints two lines: the state, and the names of the properties that changed.
ExitCode set_instance(const Arguments& arguments) {
    const Machine machine = read_machine();
    const auto make_plan = [&] { return plan_state(machine, {read_instance()}); };
    const ChangeResult result = change_machine(machine, make_plan, arguments);
    const ConfigurationPlan& plan = result.plan.front();
    tell(result);
    print(to_line(instance_of(*plan.configuration, asked_values(plan, Moment::after))));
    print(to_line(plan.needs_writing() ? Json::array({"values"}) : Json::array()));
    return result.code;
}

ExitCode export_all(const Arguments&) {
    const Machine machine = read_machine();
    for (const MachineConfiguration& each : machine)
        print(to_line(instance_of(each, all_values(each))));
    return ExitCode::success;
}

ExitCode print_schema(const Arguments&) {
    print(instance_schema);
    return ExitCode::success;
}

struct Operation {
    const char* name;
    ExitCode (*run)(const Arguments&);
};

constexpr Operation operations[] = {
    {"get", get},           {"set", set_instance},    {"test", test_instance},
    {"export", export_all}, {"schema", print_schema},
};

ExitCode dsc(const Arguments& arguments) {
    const auto* const found =
        std::find_if(std::begin(operations), std::end(operations),
                     [&](const Operation& each) { return arguments.operands.front() == each.name; });
    return found->run(arguments);
}

} // namespace

const Verb dsc_verb{
    .name = "dsc",
    .usage =
        "get|set|test|export|schema [--what-if] [--restart auto|never] [--timeout SECONDS] [--backup FOLDER] "
        "[--keep N]",
    .least_operands = 1,
    .most_operands = 1,
    .summary = "act as a resource for Desired State Configuration (DSC)",
    .help = R"(
The manifest of a DSC resource runs this command. It reads an instance from the standard input (get, set, test) and
prints JSON, one object per line; messages are JSON on the standard error stream. The exit code is 0 unless
the command fails.
)",
    .run = dsc,
    .speaks_json = true,
};

} // namespace ctl
