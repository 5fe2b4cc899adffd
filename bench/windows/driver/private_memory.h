#pragma once
#include <string>

namespace bench {

/// The memory, in bytes, that the process with this command line shares with no other. Wine does not report
/// it, so the system below Wine is asked. Throws std::runtime_error when there is not exactly one such
/// process.
double private_bytes(const std::string& command_line);

} // namespace bench
