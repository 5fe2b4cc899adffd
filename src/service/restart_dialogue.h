#pragma once
/// What the restart of a service asks and tells. One realisation shows boxes and wait windows, another
/// prints.
#include "platform/win32.h"

#include <functional>

/// Why the service does not run with the new values.
enum class ServiceTrouble {
    /// The service manager cannot be opened, or the service's state cannot be read.
    unreachable,
    /// The manager knows no such service, or does not open it.
    unknown,
    /// The request to stop was refused: the service runs as before.
    stop_refused,
    /// The progress of the stop could not be read, or the time ran out.
    not_stopped,
    /// The start was refused or, where that is waited for, the service did not come to run.
    not_started,
    /// Afterwards the service is not stopped, so it was not started. Deliberately told also when the restart
    /// was declined and the service simply kept running.
    not_restarted,
};

/// Whatever a function throws leaves the sequence, with every handle closed.
class RestartDialogue {
public:
    RestartDialogue() = default;
    RestartDialogue(const RestartDialogue&) = delete;
    RestartDialogue& operator=(const RestartDialogue&) = delete;

    /// The service runs: stop it now, and start it again after the writing?
    virtual bool agrees_to_restart() = 0;
    /// Asked after the writing: the service was stopped before; start it?
    virtual bool agrees_to_start() = 0;
    /// Run `step`, which stops (starts) the service, and show meanwhile that this takes its time.
    virtual void while_stopping(const std::function<void()>& step) = 0;
    virtual void while_starting(const std::function<void()>& step) = 0;
    /// Called every 10 milliseconds of such a step.
    virtual void pass() = 0;
    /// `code` is the system's, of the call that failed; 0 when none did.
    virtual void tell(ServiceTrouble trouble, DWORD code) = 0;

protected:
    ~RestartDialogue() = default;
};
