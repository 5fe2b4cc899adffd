#pragma once
#include <string>

namespace bench {

/// The memory, in bytes, that the process of this command line shares with no other. Wine does not tell, so
/// the system below it is asked. Throws std::runtime_error when there is not exactly one such process.
double private_bytes(const std::string& command_line);

} // namespace bench
