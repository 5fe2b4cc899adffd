#include "ctl/diff/formats.h"
#include "ctl/diff/html_page.h"
#include "ctl/io/console.h"
#include "ctl/io/visible.h"
#include "ctl/template/xml.h"

#include <algorithm>

namespace ctl {
namespace {

/// Nothing that a machine says ends a tag or an attribute: what XML would refuse, visible() has replaced.
std::string html(const std::string& text) { return xml(visible(text)); }

/// A long list may break behind its commas, which a browser would not do by itself.
std::string code(const std::string& text, const char* name) {
    std::string breaking;
    for (const char each : html(text)) {
        breaking += each;
        if (each == ',')
            breaking += "<wbr>";
    }
    return std::string("<td class=\"") + name + "\"><code>" + breaking + "</code></td>";
}

/// A count that shows only its machines when it is pressed.
void print_count(const char* kind, const char* label, std::size_t count) {
    print(std::string("<button type=\"button\" class=\"") + kind + "\" data-show=\"" + kind +
          "\" aria-pressed=\"false\"><b>" + std::to_string(count) + "</b> " + label + "</button>\n");
}

void print_counts(const Fleet& fleet) {
    print_count("all", "machines", fleet.machines.size());
    print_count("sync", "in sync", fleet.in_sync);
    print_count("drift", "drift", fleet.drifting);
    print_count("problem", "with a problem", fleet.with_problems);
    print_count("pending", "restart pending", fleet.restart_pending);
    print_count("spec", "another spec file", fleet.other_spec_file);
}

/// The classes by which the counts choose.
std::string kinds_of(const MachineDifferences& machine) {
    const std::string state = !machine.problem.empty() ? "problem" : machine.in_sync() ? "sync" : "drift";
    return "all " + state + (machine.restart_pending ? " pending" : "") +
           (machine.other_spec_file ? " spec" : "");
}

std::string row_of(const Difference& difference) {
    return "<tr>" + code(difference.value, "value") + code(shown(difference.desired), "desired") +
           code(shown(difference.current), "current") + "</tr>\n";
}

/// The column of the values is headed by their configuration.
std::string heading_of(const Difference& difference) {
    return "<tr><th scope=\"col\">" + html(difference.configuration) +
           "</th><th scope=\"col\">Desired</th><th scope=\"col\">Current</th></tr>\n";
}

std::string table_of(const std::vector<Difference>& differences) {
    if (differences.empty())
        return "";
    std::string table = "<table class=\"values\">\n";
    const std::string* configuration = nullptr;
    for (const Difference& each : differences) {
        if (configuration == nullptr || *configuration != each.configuration)
            table += heading_of(each);
        configuration = &each.configuration;
        table += row_of(each);
    }
    return table + "</table>";
}

std::string details_of(const MachineDifferences& machine) {
    std::string details;
    if (!machine.problem.empty())
        details += "<p class=\"why\">" + html(machine.problem) + "</p>";
    details += table_of(machine.differences);
    for (const std::string& note : notes_on(machine))
        details += "<p class=\"note\">" + html(note) + "</p>";
    return details;
}

/// With a blank for the "T".
std::string day_and_time(std::string time) {
    std::replace(time.begin(), time.end(), 'T', ' ');
    return time;
}

void print_machine(const MachineDifferences& machine) {
    print("<tr class=\"" + kinds_of(machine) + "\"><th scope=\"row\">" + html(machine.machine) +
          "</th><td><span class=\"state\">" + state_word(machine) + "</span></td><td>" + details_of(machine) +
          "</td><td class=\"time\">" + html(day_and_time(machine.time)) + "</td></tr>\n");
}

} // namespace

void print_html(const Fleet& fleet) {
    print(html_head);
    print_counts(fleet);
    print(html_table);
    for (const MachineDifferences& each : fleet.machines)
        print_machine(each);
    print(html_end);
}

} // namespace ctl
