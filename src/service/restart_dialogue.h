#pragma once
/// The questions and reports of a restart of a service. One implementation shows boxes and wait windows,
/// another prints.
#include "platform/win32.h"

#include <functional>

/// Why the service does not run with the new values.
enum class ServiceTrouble {
    /// The service manager cannot be opened, or the service's state cannot be read.
    unreachable,
    /// The service does not exist or cannot be opened.
    unknown,
    /// The request to stop was refused: the service runs as before.
    stop_refused,
    /// The progress of the stop could not be read, or the time ran out.
    not_stopped,
    /// The start was refused, or the service did not reach the running state in time.
    not_started,
    /// Afterwards the service is not stopped, so it was not started. Deliberately also reported if the
    /// restart was declined and the service kept running.
    not_restarted,
};

/// If a function throws, every handle is closed, and the exception ends the sequence.
class RestartDialogue {
public:
    RestartDialogue() = default;
    RestartDialogue(const RestartDialogue&) = delete;
    RestartDialogue& operator=(const RestartDialogue&) = delete;

    /// The service is running: may it be stopped now, and started again after the values are written?
    virtual bool agrees_to_restart() = 0;
    /// Asked after the values are written: the service was stopped before; may it be started?
    virtual bool agrees_to_start() = 0;
    /// Runs `step`, which stops (starts) the service, and meanwhile shows that this takes time.
    virtual void while_stopping(const std::function<void()>& step) = 0;
    virtual void while_starting(const std::function<void()>& step) = 0;
    /// Called every 10 milliseconds of such a step.
    virtual void pass() = 0;
    /// `code` is the system's error code of the call that failed; 0 if none did.
    virtual void tell(ServiceTrouble trouble, DWORD code) = 0;

protected:
    ~RestartDialogue() = default;
};
