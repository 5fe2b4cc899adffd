#pragma once
/// Scripts the services of this machine and counts the calls to them.
#include "substitute/services/services.h"

#include <cstdint>
#include <string>
#include <vector>

namespace substitute {

/// The time of a service that never reaches the state.
inline constexpr std::uint64_t never = UINT64_MAX;

/// How a service behaves. Codes: 0 is success, anything else fails the call with that code.
struct ServiceScript {
    DWORD state = SERVICE_RUNNING;
    DWORD start_type = SERVICE_AUTO_START;
    bool accepts_stop = true;
    /// Services that depend on it and run.
    std::vector<std::string> dependents = {};
    DWORD open_error = 0;
    DWORD stop_error = 0;
    DWORD start_error = 0;
    /// Virtual milliseconds in SERVICE_STOP_PENDING and SERVICE_START_PENDING.
    std::uint64_t stop_time = 0;
    std::uint64_t start_time = 0;
    /// Once asked to stop, every query fails with this code: the service vanishes while it stops.
    DWORD query_error_while_stopping = 0;
};

struct ServiceCounts {
    int queries = 0;
    int stops = 0;
    int starts = 0;
};

/// Installs the service, or replaces its script and state; its counts start anew.
void set_service(const std::string& name, const ServiceScript& script);
/// Open handles of it stay, and every call with one fails as with a service that does not exist.
void remove_service(const std::string& name);
DWORD service_state(const std::string& name);
/// The rights that were asked for when it was opened last.
DWORD asked_access(const std::string& name);
/// Calls that reached the service, refused ones included.
ServiceCounts service_counts(const std::string& name);
/// How many handles of services and of the manager are open.
int open_service_handles();

} // namespace substitute
