#pragma once
#include "ctl/change/plan.h"
#include "ctl/exit_codes.h"

#include <string>

namespace ctl {

struct Execution {
    bool restart;
    /// For each wait for the service.
    int timeout_seconds;
};

/// What became of the whole. The changes tell what became of each value.
struct Outcome {
    ExitCode code;
    /// Why the code is not 0, or what is worth knowing although it is.
    std::string text;
};

/// Throws Failure when a key that will be written may not be.
void require_write_access(const std::vector<ConfigurationChanges>& all);

/// Writes what differs, one configuration after the other, with its service stopped meanwhile when it runs
/// and a restart is wished. Throws Failure only when nothing was written yet.
Outcome execute(std::vector<ConfigurationChanges>& all, const Execution& execution);

} // namespace ctl
