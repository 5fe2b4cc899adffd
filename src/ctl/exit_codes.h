#pragma once
/// How tavrinctl ends. Callers that run a command and read its exit code go by these numbers: they stay.

namespace ctl {

enum ExitCode : int {
    as_wished = 0,     ///< Changed or not, and whatever a --what-if found.
    failed = 1,        ///< Something outside went wrong: a file, the registry, the network.
    usage = 2,         ///< The command line is not understood.
    differs = 3,       ///< Only with --exit-code: something differs, or differed before the run.
    invalid = 4,       ///< A value, a name, a state or a spec file is not acceptable; nothing was written.
    access_denied = 5, ///< Nothing was written.
    no_server = 6,     ///< A server refused or was not reached.
    not_restarted = 7, ///< The values are written, but the service did not restart.
};

} // namespace ctl
