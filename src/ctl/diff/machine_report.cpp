#include "ctl/diff/machine_report.h"

#include "ctl/change/state_file.h"
#include "ctl/failure.h"
#include "ctl/io/json.h"
#include "ctl/io/printable.h"

#include <algorithm>

namespace ctl {
namespace {

using Kind = JsonTree::Kind;

[[noreturn]] void refuse(const std::string& why) {
    throw Failure{ExitCode::invalid, "not a report of \"tavrinctl show --json\": " + why};
}

/// The member's text; empty if there is none.
std::string text_of(const JsonTree& object, std::string_view name) {
    const JsonTree* const found = object.find(name);
    return found != nullptr && found->kind == Kind::text ? found->text : "";
}

const JsonTree& object_in(const JsonTree& object, const char* name) {
    const JsonTree* const found = object.find(name);
    if (found == nullptr || found->kind != Kind::object)
        refuse(std::string("no object \"") + name + "\"");
    return *found;
}

std::optional<std::string> plain_text(const std::string& name, const JsonTree& value) {
    if (value.kind == Kind::null)
        return std::nullopt;
    if (value.kind == Kind::object || value.kind == Kind::array)
        refuse("the value \"" + printable(name) + "\" has no text");
    return value.text;
}

ReportedValue read_value(const std::string& name, const JsonTree& value) {
    ReportedValue read;
    read.name = name;
    const bool is_bare = value.kind != Kind::object;
    const JsonTree* const text = is_bare ? &value : value.find("value");
    if (text != nullptr)
        read.text = plain_text(name, *text);
    if (is_bare)
        return read;
    read.title = text_of(value, "title");
    read.kind = text_of(value, "kind");
    read.type = text_of(value, "type");
    read.octets = text_of(value, "octets");
    read.unreadable = text_of(value, "unreadable");
    if (text == nullptr && read.type.empty() && read.unreadable.empty())
        refuse("the value \"" + printable(name) + "\" has no member \"value\"");
    return read;
}

ReportedConfiguration read_configuration(const std::string& name, const JsonTree& configuration) {
    if (configuration.kind != Kind::object)
        refuse("the configuration \"" + printable(name) + "\" is not an object");
    ReportedConfiguration read;
    read.name = name;
    read.key = text_of(configuration, "key");
    read.service = text_of(configuration, "service");
    read.service_state = text_of(configuration, "serviceState");
    read.start_type = text_of(configuration, "startType");
    const JsonTree* const pending = configuration.find("restartPending");
    read.restart_pending = pending != nullptr && pending->text == "true";
    for (const JsonMember& member : object_in(configuration, "values").members)
        read.values.push_back(read_value(member.name, member.value));
    return read;
}

std::vector<std::string> read_spec_files(const JsonTree& report) {
    std::vector<std::string> sums;
    if (const JsonTree* const files = report.find("specFiles")) {
        for (const JsonMember& file : files->members)
            sums.push_back(text_of(file.value, "sha256"));
    }
    std::sort(sums.begin(), sums.end());
    return sums;
}

void check_version(const JsonTree& report) {
    if (report.kind != Kind::object)
        refuse("not an object");
    const JsonTree* const version = report.find("schema");
    if (version == nullptr)
        refuse("no member \"schema\"");
    if (version->kind != Kind::whole_number || version->text != std::to_string(schema_version)) {
        refuse("schema " + printable(version->text) + "; this program reads " +
               std::to_string(schema_version));
    }
}

} // namespace

MachineReport read_report(std::string_view octets) {
    const JsonTree tree = read_json(octets);
    check_version(tree);
    MachineReport report;
    report.spec_files = read_spec_files(tree);
    if (const JsonTree* const machine = tree.find("machine")) {
        report.machine = text_of(*machine, "name");
        report.time = text_of(*machine, "time");
    }
    for (const JsonMember& member : object_in(tree, "configurations").members)
        report.configurations.push_back(read_configuration(member.name, member.value));
    return report;
}

Json json_of(const ReportedValue& value) {
    if (!value.unreadable.empty())
        return {{"unreadable", value.unreadable}};
    if (!value.octets.empty())
        return {{"type", value.type}, {"octets", value.octets}};
    const Json text = value.text ? Json(*value.text) : Json();
    return value.type.empty() ? text : Json{{"value", text}, {"type", value.type}};
}

std::string shown(const ReportedValue& value) {
    if (!value.unreadable.empty())
        return "(" + printable(value.unreadable) + ")";
    if (value.type.empty())
        return value.text ? printable(*value.text) : "(not set)";
    return printable(value.text.value_or(value.octets)) + " (" + printable(value.type) + ")";
}

} // namespace ctl
