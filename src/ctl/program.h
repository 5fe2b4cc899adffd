#pragma once
#include "ctl/arguments.h"

#include <span>
#include <string>
#include <vector>

namespace ctl {

/// The verbs that this build has.
std::span<const Verb> verbs();

/// The whole program, from the words behind its name to the exit code. Nothing is thrown.
int run_program(const std::vector<std::string>& words);

} // namespace ctl
