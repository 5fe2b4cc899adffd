#include "ctl/change/report.h"

#include "ctl/io/encoding.h"
#include "ctl/io/printable.h"

#include <algorithm>

namespace ctl {
namespace {

/// A change that is needed may not have been written, because something failed before.
bool is_changed(const Change& change, bool what_if) { return what_if ? change.is_needed : change.is_written; }

Json json_of(const Change& change, bool what_if) {
    Json json = Json::object();
    json.get_ref<Json::object_t&>().reserve(4);
    add_member(json, "before", json_of(change.before));
    add_member(json, "after", json_of_result(change));
    add_member(json, "changed", is_changed(change, what_if));
    return json;
}

/// A restart counts as well: an earlier run may have left it unfinished.
bool any_changed(const ConfigurationPlan& plan, bool what_if) {
    return (what_if ? plan.restart_is_pending : plan.is_restarted) ||
           std::any_of(plan.changes.begin(), plan.changes.end(),
                       [&](const Change& each) { return is_changed(each, what_if); });
}

Json json_of(const ConfigurationPlan& plan, bool what_if) {
    Json values = Json::object();
    for (const Change& each : plan.changes)
        add_member(values, to_utf8(each.value_name()), json_of(each, what_if));
    Json json = Json::object();
    add_service(json, *plan.configuration);
    json["restarted"] = plan.is_restarted;
    json["changed"] = any_changed(plan, what_if);
    json["values"] = std::move(values);
    return json;
}

std::string shown_after(const Change& change) {
    if (change.saved)
        return shown(as_stored(*change.saved));
    if (!change.after)
        return "(removed)";
    return change.after->empty() ? "(empty)" : printable(to_utf8(*change.after));
}

std::string shown_changes(const ConfigurationPlan& plan, bool what_if) {
    std::string lines = printable(to_utf8(plan.configuration->name)) + "\n";
    for (const Change& each : plan.changes) {
        if (is_changed(each, what_if)) {
            lines += "  " + printable(to_utf8(each.value_name())) + ": " + shown(each.before) + " -> " +
                     shown_after(each) + "\n";
        }
    }
    const std::string restart = restart_text(plan);
    return restart.empty() ? lines : lines + "  " + restart + "\n";
}

} // namespace

Json json_of_result(const Change& change) {
    if (change.is_kept)
        return json_of(change.before);
    if (change.saved)
        return json_of(as_stored(*change.saved));
    return change.after ? Json(to_utf8(*change.after)) : Json();
}

std::string restart_text(const ConfigurationPlan& plan) {
    const std::string service = "service " + printable(to_utf8(plan.configuration->service()));
    const bool was_pending = plan.restart_is_pending && !plan.needs_writing();
    if (plan.is_restarted)
        return service + " restarted" + (was_pending ? " (left unfinished by an earlier run)" : "");
    return was_pending ? service + " must be restarted (left unfinished by an earlier run)" : "";
}

Json report_json(const ChangeResult& result, bool what_if) {
    Json configurations = Json::object();
    Configurations concerned;
    for (const ConfigurationPlan& each : result.plan) {
        configurations[to_utf8(each.configuration->name)] = json_of(each, what_if);
        concerned.push_back(each.configuration);
    }
    const bool changed = std::any_of(result.plan.begin(), result.plan.end(),
                                     [&](const auto& each) { return any_changed(each, what_if); });
    return {{"schema", schema_version},
            {"machine", machine_identity()},
            {"specFiles", spec_files_of(concerned)},
            {"changed", changed},
            {"whatIf", what_if},
            {"backup", result.backup.empty() ? Json() : Json(result.backup)},
            {"configurations", std::move(configurations)}};
}

std::string report_text(const ChangeResult& result, bool what_if) {
    std::string text = what_if ? "what-if: nothing is written\n" : "";
    if (is_in_sync(result.plan))
        return text + "nothing to do: all values match\n";
    if (!result.backup.empty())
        text += "previous values saved to " + result.backup + "\n";
    for (const ConfigurationPlan& each : result.plan) {
        if (any_changed(each, what_if) || each.restart_is_pending)
            text += shown_changes(each, what_if);
    }
    return text;
}

} // namespace ctl
