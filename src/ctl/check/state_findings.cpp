#include "ctl/check/state_findings.h"

#include "ctl/change/state_check.h"
#include "ctl/io/encoding.h"
#include "ctl/io/registry_names.h"
#include "ctl/io/visible.h"

#include <algorithm>

namespace ctl {
namespace {

class StateFindings {
public:
    StateFindings(const std::vector<CheckedSpec>& specs, unsigned code_page)
        : specs_(specs), code_page_(code_page) {}

    void take(const WishedConfiguration& wished);
    std::vector<Finding> take_all() { return std::move(findings_); }

private:
    bool is_meant(const WishedConfiguration& wished, const SpecModel& spec) const;
    void take(const WishedConfiguration& wished, const CheckedSpec& found);
    void tell(Severity severity, const std::string& text) { findings_.push_back({1, severity, text}); }

    const std::vector<CheckedSpec>& specs_;
    unsigned code_page_;
    std::vector<Finding> findings_;
};

/// An old file is named by the machine's registry, so only its key tells which configuration it is.
bool StateFindings::is_meant(const WishedConfiguration& wished, const SpecModel& spec) const {
    if (!spec.is_old)
        return is_same_registry_name(to_utf8(spec.name.text, code_page_), wished.name);
    return !wished.key.empty() &&
           is_same_registry_name(to_utf8(spec.registry_path.text, code_page_), wished.key);
}

void StateFindings::take(const WishedConfiguration& wished) {
    const auto found = std::find_if(specs_.begin(), specs_.end(),
                                    [&](const CheckedSpec& each) { return is_meant(wished, each.spec); });
    if (found == specs_.end()) {
        tell(Severity::error,
             "none of the spec files has the configuration \"" + visible(wished.name) + "\"");
    } else {
        take(wished, *found);
    }
}

void StateFindings::take(const WishedConfiguration& wished, const CheckedSpec& found) {
    const std::string name = visible(wished.name) + ": ";
    const Guards facts{to_utf8(found.spec.registry_path.text, code_page_),
                       to_utf8(found.spec.service_name.text, code_page_), found.sha256};
    for (const std::string& each : contradictions(wished.guards, facts))
        tell(Severity::error, name + "a guard of the state does not hold: " + each);
    for (const std::string& each : contradictions({wished.key, wished.service, {}}, facts))
        tell(Severity::warning, name + each);
    for (const std::string& each : state_problems(wished, found.spec, code_page_))
        tell(Severity::error, name + each);
    for (const WishedValue& each : wished.values) {
        if (!each.type.empty())
            tell(Severity::warning, name + visible(each.name) + ": a value of the type " + each.type +
                                        " is accepted only on machines that already store it");
    }
}

} // namespace

std::vector<Finding> check_state(const State& state, const std::vector<CheckedSpec>& specs,
                                 unsigned code_page) {
    StateFindings findings(specs, code_page);
    for (const WishedConfiguration& each : state)
        findings.take(each);
    return findings.take_all();
}

} // namespace ctl
