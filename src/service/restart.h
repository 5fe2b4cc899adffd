#pragma once
#include "service/restart_dialogue.h"

#include <chrono>
#include <functional>
#include <string>

/// The changes to write, and the service that must be restarted for them.
struct Writing {
    /// Empty if there is no service; then nothing is asked or reported.
    std::string service_name;
    /// Whether there is anything to write; asked once, and only when there is a service.
    std::function<bool()> any = {};
    /// Writes the changes. Called in any case, even if the service could not be stopped; its exceptions are
    /// passed on.
    std::function<void()> write = {};
    /// How long to wait for a stopping service, in passes of 10 milliseconds. A system with a coarse clock
    /// makes each pass longer.
    std::chrono::milliseconds stop_limit = std::chrono::minutes(1);
    /// How long to wait until a started service runs; zero to not wait.
    std::chrono::milliseconds start_limit = std::chrono::milliseconds(0);
    /// The rights with which the service manager and the service are opened.
    DWORD manager_access = SC_MANAGER_ALL_ACCESS;
    DWORD service_access = SERVICE_ALL_ACCESS;
};

/// Writes the changes. If there is a service and anything to write, restarts the service around this, as far
/// as `dialogue` agrees.
void restart_around(const Writing& writing, RestartDialogue& dialogue);
