#pragma once
#include "service/restart_dialogue.h"

#include <chrono>
#include <functional>
#include <string>

/// What is to be written, and the service that has to notice it.
struct Writing {
    /// Empty: there is none. Then nothing is asked or told.
    std::string service_name;
    /// Whether there is anything to write; asked once, and only when there is a service.
    std::function<bool()> any = {};
    /// Writes it. Called in any case, and whatever has become of the service; what it throws passes through.
    std::function<void()> write = {};
    /// How long a stopping service is waited for, in passes of 10 milliseconds; a system whose clock is
    /// coarse makes each of them longer.
    std::chrono::milliseconds stop_limit = std::chrono::minutes(1);
    /// How long a started one is waited for until it runs; zero: not at all.
    std::chrono::milliseconds start_limit = std::chrono::milliseconds(0);
    /// The rights that the service manager and the service are opened with.
    DWORD manager_access = SC_MANAGER_ALL_ACCESS;
    DWORD service_access = SERVICE_ALL_ACCESS;
};

/// Writes and, when there is anything to write and a service, restarts that service around the writing, as
/// far as `dialogue` agrees.
void restart_around(const Writing& writing, RestartDialogue& dialogue);
