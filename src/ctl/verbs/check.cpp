#include "ctl/check/spec_check.h"
#include "ctl/check/state_check.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/io/system.h"
#include "ctl/verbs/verbs.h"

namespace ctl {
namespace {

CheckedFile unreadable(const std::string& path) { return {path, {{1, Severity::error, why_unreadable()}}}; }

CheckedFile checked(const std::string& path, const std::string& octets, unsigned code_page) {
    std::vector<Finding> findings = check_spec(octets, code_page);
    for (Finding& each : findings)
        each.text = to_utf8(each.text, code_page);
    return {path, std::move(findings)};
}

class Checking {
public:
    Checking(unsigned code_page, bool keeps_specs) : code_page_(code_page), keeps_specs_(keeps_specs) {}

    void take_spec(const std::string& path) {
        auto octets = read_file(path);
        if (!octets) {
            files_.push_back(unreadable(path));
            return;
        }
        files_.push_back(checked(path, *octets, code_page_));
        if (!keeps_specs_)
            return;
        std::string digest = sha256(*octets);
        specs_.push_back({SpecModel(std::move(*octets)), std::move(digest)});
    }

    void take_state(const std::string& path) {
        const auto octets = read_file(path, longest_json);
        files_.push_back(octets ? CheckedFile{path, state_findings(*octets)} : unreadable(path));
    }

    const CheckedFiles& files() const { return files_; }

private:
    std::vector<Finding> state_findings(const std::string& octets) const {
        try {
            return check_state(read_state(octets), specs_, code_page_);
        } catch (const Failure& failure) {
            return {{1, Severity::error, failure.text}};
        }
    }

    unsigned code_page_;
    bool keeps_specs_;
    CheckedFiles files_;
    std::vector<CheckedSpec> specs_;
};

ExitCode check(const Arguments& arguments) {
    Checking checking(arguments.code_page.value_or(machine_code_page()), !arguments.state.empty());
    for (const std::string& path : arguments.operands)
        checking.take_spec(path);
    if (!arguments.state.empty())
        checking.take_state(arguments.state);
    print(report_findings(checking.files(), arguments.format));
    return has_errors(checking.files()) ? ExitCode::invalid : ExitCode::success;
}

} // namespace

const Verb check_verb{
    .name = "check",
    .usage = "FILE... [--state STATE.json] [--format text|json|sarif|github] [--code-page N]",
    .least_operands = 1,
    .most_operands = any_number,
    .summary = "report mistakes in spec files and state files",
    .help = R"(
Checks spec files and prints a line for each mistake, as a compiler does:

    file:line: error|warning: text

An error is something that the window refuses; a warning is something that causes trouble for people who use
the window.
With --state, also reports what apply would refuse in that state on machines with these spec files. The
formats sarif and github are for services that show findings beside the changed lines. The exit code is 4 if
there are errors.
)",
    .run = check,
};

} // namespace ctl
