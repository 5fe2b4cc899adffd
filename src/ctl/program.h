#pragma once
#include "ctl/failure.h"

#include <string>
#include <vector>

namespace ctl {

/// The whole program: takes the words after its name. Throws nothing.
ExitCode run_program(const std::vector<std::string>& words);

} // namespace ctl
