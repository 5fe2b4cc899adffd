#pragma once
#include "ctl/exit_codes.h"

#include <string>

namespace ctl {

/// What ends a verb before its time: the words for the standard error stream, in UTF-8, and the exit code.
struct Failure {
    ExitCode code;
    std::string text;
};

} // namespace ctl
