#include "ctl/check/spec_check.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/io/files.h"
#include "ctl/io/visible.h"
#include "ctl/verbs/verbs.h"

#include <algorithm>

namespace ctl {
namespace {

constexpr unsigned utf8 = 65001;

void print_finding(const std::string& path, const Finding& finding, unsigned code_page) {
    const char* const severity = finding.severity == Severity::error ? "error" : "warning";
    print(path + ":" + std::to_string(finding.line) + ": " + severity + ": " +
          visible(to_utf8(finding.text, code_page)) + "\n");
}

/// False when there are errors.
bool check_file(const std::string& path, unsigned code_page) {
    const auto octets = read_file(path);
    const auto findings = octets ? check_spec(*octets, code_page == utf8)
                                 : std::vector<Finding>{{1, Severity::error, "the file cannot be read"}};
    for (const Finding& each : findings)
        print_finding(path, each, code_page);
    return std::none_of(findings.begin(), findings.end(),
                        [](const Finding& each) { return each.severity == Severity::error; });
}

int check(const Arguments& arguments) {
    const unsigned code_page = arguments.code_page.value_or(machine_code_page());
    bool fine = true;
    for (const std::string& path : arguments.operands)
        fine = check_file(path, code_page) && fine;
    return fine ? as_wished : invalid;
}

} // namespace

const Verb check_verb{
    .name = "check",
    .usage = "FILE... [--code-page N]",
    .least_operands = 1,
    .most_operands = any_number,
    .summary = "report mistakes in spec files",
    .help = R"(
Checks spec files and prints a line for each mistake, as a compiler does:

    file:line: error|warning: text

An error is what the window refuses, a warning what its users would stumble over. Ends with 4 if there are
errors.
)",
    .run = check,
};

} // namespace ctl
