#pragma once
/// The running sample agent: a service that waits for its event until it is told to stop.
#include <string>

/// Runs the service under the service manager, which started this process; returns when it has stopped.
/// The result is the process' exit code.
int run_service(const std::string& name);
