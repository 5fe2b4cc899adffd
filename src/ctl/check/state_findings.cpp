#include "ctl/check/state_findings.h"

#include "ctl/change/state_check.h"
#include "ctl/io/encoding.h"
#include "ctl/io/registry_names.h"
#include "ctl/io/visible.h"

#include <algorithm>
#include <set>

namespace ctl {
namespace {

/// An old file is named by the machine's registry, so only its key tells which configuration it is.
bool is_meant(const WishedConfiguration& wished, const SpecModel& spec, unsigned code_page) {
    if (!spec.is_old)
        return is_same_registry_name(to_utf8(spec.name.text, code_page), wished.name);
    return !wished.key.empty() &&
           is_same_registry_name(to_utf8(spec.registry_path.text, code_page), wished.key);
}

class StateFindings {
public:
    StateFindings(const std::vector<CheckedSpec>& specs, unsigned code_page)
        : specs_(specs), code_page_(code_page) {}

    void take(const WishedConfiguration& wished);
    std::vector<Finding> take_all() { return std::move(findings_); }

private:
    void take(const WishedConfiguration& wished, const CheckedSpec& found);
    void tell(Severity severity, const std::string& text) { findings_.push_back({1, severity, text}); }

    const std::vector<CheckedSpec>& specs_;
    unsigned code_page_;
    std::set<const CheckedSpec*> taken_;
    std::vector<Finding> findings_;
};

void StateFindings::take(const WishedConfiguration& wished) {
    const CheckedSpec* const found = find_spec(wished, specs_, code_page_);
    const std::string name = visible(wished.name);
    if (found == nullptr) {
        tell(Severity::error, "none of the spec files has the configuration \"" + name + "\"");
    } else if (!taken_.insert(found).second) {
        tell(Severity::error, "the configuration \"" + name + "\" is given twice");
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

const CheckedSpec* find_spec(const WishedConfiguration& wished, const std::vector<CheckedSpec>& specs,
                             unsigned code_page) {
    const auto found = std::find_if(specs.begin(), specs.end(), [&](const CheckedSpec& each) {
        return is_meant(wished, each.spec, code_page);
    });
    return found == specs.end() ? nullptr : &*found;
}

std::vector<Finding> check_state(const State& state, const std::vector<CheckedSpec>& specs,
                                 unsigned code_page) {
    StateFindings findings(specs, code_page);
    for (const WishedConfiguration& each : state)
        findings.take(each);
    return findings.take_all();
}

} // namespace ctl
