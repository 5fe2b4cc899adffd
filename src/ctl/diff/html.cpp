#include "ctl/diff/formats.h"
#include "ctl/io/console.h"
#include "ctl/io/printable.h"

#include <algorithm>

namespace ctl {
namespace {

// The parts that are the same on every page. The page's policy lets it load nothing and run only its own
// script, which it names by its SHA-256: a changed script needs a new one, which the tests print.

constexpr const char* html_head = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'; script-src 'sha256-6S7YelGW2WZXRE/m0tKjXqvd5yIxrJhE9u8mg+LqYYI='">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Machines compared with the desired state</title>
<style>
:root { color-scheme: light dark; --ground: #fff; --text: #1b1f24; --soft: #57606a; --line: #d5dae0; --field: #f5f7f9;
  --good: #17683a; --bad: #a4500b; --worst: #b01822; --focus: #0b62c4; }
@media (prefers-color-scheme: dark) {
  :root { --ground: #15181c; --text: #e4e7eb; --soft: #a3acb7; --line: #39414b; --field: #1f242a;
    --good: #6fce93; --bad: #f0a860; --worst: #ff8f8c; --focus: #6cb0ff; }
}
* { box-sizing: border-box; }
body { margin: 0 auto; padding: 1.5rem; max-width: 76rem; background: var(--ground); color: var(--text);
  font: 1rem/1.45 "Segoe UI", system-ui, sans-serif; }
h1 { margin: 0 0 1rem; font-size: 1.5rem; font-weight: 600; }
.counts { display: flex; flex-wrap: wrap; gap: .5rem; margin-bottom: 1rem; }
button { padding: .5rem .9rem; border: 1px solid var(--line); border-radius: .4rem; background: var(--field);
  color: inherit; font: inherit; text-align: left; cursor: pointer; }
button b { display: block; font-size: 1.5rem; line-height: 1.2; }
button[aria-pressed=true] { border-color: var(--focus); box-shadow: inset 0 0 0 1px var(--focus); }
:focus-visible { outline: 2px solid var(--focus); outline-offset: 2px; }
.filter { display: flex; flex-wrap: wrap; align-items: center; gap: .4rem .8rem; margin-bottom: 1rem; }
input { width: 18rem; max-width: 100%; padding: .4rem .6rem; border: 1px solid var(--line); border-radius: .4rem;
  background: var(--ground); color: inherit; font: inherit; }
output { color: var(--soft); }
table { width: 100%; border-collapse: collapse; }
th, td { padding: .5rem .8rem .5rem 0; border-top: 1px solid var(--line); vertical-align: top; text-align: left;
  overflow-wrap: anywhere; }
th { font-weight: 600; }
thead th, .values th { border-top: 0; color: var(--soft); font-size: .85rem; }
.machines { table-layout: fixed; }
.machines > thead th:nth-child(1) { width: 24%; }
.machines > thead th:nth-child(2) { width: 6rem; }
.machines > thead th:nth-child(4) { width: 11.2rem; }
.values th, .values td { padding-top: .1rem; padding-bottom: .1rem; border-top: 0; }
.values { table-layout: fixed; margin-bottom: .2rem; }
.values th:first-child { width: 28%; }
code { font: .9rem Consolas, "DejaVu Sans Mono", monospace; white-space: pre-wrap; }
p { margin: 0; }
.note { color: var(--bad); }
.machines .time { padding-right: 0; color: var(--soft); font-size: .85rem; font-variant-numeric: tabular-nums; }
.state { font-weight: 600; white-space: nowrap; }
.sync .state, button.sync b { color: var(--good); }
.drift .state, button.drift b { color: var(--bad); }
.problem .state, button.problem b { color: var(--worst); }
@media (max-width: 44rem) {
  body { padding: 1rem; }
  .machines > thead { display: none; }
  .machines > tbody > tr { display: block; padding: .6rem 0; border-top: 1px solid var(--line); }
  .machines > tbody > tr > * { display: block; padding: .1rem 0; border: 0; }
  .machines > tbody > tr > :nth-child(-n+2) { display: inline-block; margin-right: .6rem; }
  .values tr > * { display: block; padding: 0; }
  .values th:first-child { width: auto; padding-top: .2rem; }
  .values th:nth-child(n+2) { display: none; }
  .values td:first-child { padding-top: .3rem; }
  .values .desired::before { content: "desired "; color: var(--soft); }
  .values .current::before { content: "current "; color: var(--soft); }
}
[hidden] { display: none !important; }
@media print {
  :root { --ground: #fff; --text: #000; --soft: #444; --line: #999; --field: #fff; --good: #000; --bad: #000;
    --worst: #000; }
  :root { font-size: 11px; }
  body { max-width: none; padding: 0; }
  .filter { display: none; }
  .machines > tbody > tr { break-inside: avoid; }
  thead { display: table-header-group; }
}
</style>
</head>
<body>
<h1>Machines compared with the desired state</h1>
<div class="counts">
)";

constexpr const char* html_table = R"(</div>
<div class="filter" hidden>
<label for="words">Filter</label> <input id="words" type="search" placeholder="machine, value or text" autocomplete="off">
<output for="words" id="shown"></output>
</div>
<table class="machines">
<thead><tr><th scope="col">Machine</th><th scope="col">State</th><th scope="col">Differences</th><th scope="col">Reported</th></tr></thead>
<tbody>
)";

constexpr const char* html_end = R"(</tbody>
</table>
<script>
const rows = [...document.querySelectorAll(".machines > tbody > tr")];
const texts = rows.map(row => row.textContent.toLowerCase());
const buttons = [...document.querySelectorAll("button")];
const words = document.getElementById("words");
let kind = "all";
function show() {
  const wanted = words.value.toLowerCase();
  let count = 0;
  rows.forEach((row, i) => {
    row.hidden = !row.classList.contains(kind) || !texts[i].includes(wanted);
    count += !row.hidden;
  });
  buttons.forEach(button => button.setAttribute("aria-pressed", button.dataset.show === kind));
  document.getElementById("shown").textContent = count + " of " + rows.length + " machines";
}
buttons.forEach(button => button.addEventListener("click", () => { kind = button.dataset.show; show(); }));
words.addEventListener("input", show);
document.querySelector(".filter").hidden = false;
show();
</script>
</body>
</html>
)";

/// No text of a report can end a tag or an attribute: printable() has replaced everything that XML refuses.
std::string html(const std::string& text) { return xml(printable(text)); }

/// Lets a long list break after its commas, where a browser would not break it.
std::string code(const std::string& text, const char* name) {
    std::string breaking;
    for (const char each : html(text)) {
        breaking += each;
        if (each == ',')
            breaking += "<wbr>";
    }
    return std::string("<td class=\"") + name + "\"><code>" + breaking + "</code></td>";
}

/// A count, which is also a button that shows only the counted machines.
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

/// With a space instead of the "T".
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
