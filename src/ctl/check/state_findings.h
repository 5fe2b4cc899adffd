#pragma once
#include "ctl/change/state_file.h"
#include "ctl/check/findings.h"
#include "specfile/spec_model.h"

#include <string>
#include <vector>

namespace ctl {

/// A spec file that a state is held against.
struct CheckedSpec {
    SpecModel spec;
    /// Of its octets.
    std::string sha256;
};

/// The one of `specs` that a state's configuration is meant for; null when there is none.
const CheckedSpec* find_spec(const WishedConfiguration& wished, const std::vector<CheckedSpec>& specs,
                             unsigned code_page);

/// What `apply` would refuse, or warn of, on machines with these spec files; it is told of the state's first
/// line.
std::vector<Finding> check_state(const State& state, const std::vector<CheckedSpec>& specs,
                                 unsigned code_page);

} // namespace ctl
