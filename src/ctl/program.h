#pragma once
#include <string>
#include <vector>

namespace ctl {

/// The whole program, from the words behind its name to the exit code. Nothing is thrown.
int run_program(const std::vector<std::string>& words);

} // namespace ctl
