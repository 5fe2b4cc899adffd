#pragma once
#include <string>

namespace ctl {

/// How tavrinctl ends. The numbers never change, because callers check them.
enum class ExitCode : int {
    success = 0,       ///< Changed or not, and whatever --what-if found.
    failed = 1,        ///< A file, the registry, the network or something else outside failed.
    usage = 2,         ///< The command line is not understood.
    drift = 3,         ///< Only with --exit-code: something differs, or differed before the run.
    invalid = 4,       ///< A value, a name, a state or a spec file is invalid; nothing was written.
    access_denied = 5, ///< Nothing was written.
    no_server = 6,     ///< A server refused, or could not be reached.
    not_restarted = 7, ///< The values are written, but the service did not restart.
};

/// Ends a verb: the text for the standard error stream, in UTF-8, and the exit code.
struct Failure {
    ExitCode code;
    std::string text;
};

} // namespace ctl
