#pragma once
#include "service/restart_dialogue.h"

#include <chrono>
#include <functional>
#include <string>

/// The writing of changes, and the service that must be restarted for them.
struct Writing {
    /// Empty if there is no service; then nothing is asked or reported.
    std::string service_name;
    /// Whether there is anything to write; asked once, and only when there is a service.
    std::function<bool()> any = {};
    /// Writes the changes. Called in any case, even if the service could not be stopped; its exceptions are
    /// passed on.
    std::function<void()> write = {};
    /// How long a stopping service is waited for, in passes of 10 milliseconds; a system whose clock is
    /// coarse makes each of them longer.
    std::chrono::milliseconds stop_limit = std::chrono::minutes(1);
    /// How long to wait until a started service runs; zero to not wait.
    std::chrono::milliseconds start_limit = std::chrono::milliseconds(0);
    /// The rights that the service manager and the service are opened with.
    DWORD manager_access = SC_MANAGER_ALL_ACCESS;
    DWORD service_access = SERVICE_ALL_ACCESS;
};

/// Writes and, when there is anything to write and a service, restarts that service around the writing, as
/// far as `dialogue` agrees.
void restart_around(const Writing& writing, RestartDialogue& dialogue);
