#pragma once
#include "service/restart_dialogue.h"
#include "service/service_handle.h"

#include <chrono>
#include <optional>
#include <string>

/// A service, as far as the apply sequence deals with it: opened once, asked, stopped, started again.
class AgentService {
public:
    AgentService(const std::string& name, RestartDialogue& dialogue);

    /// Stops the service if it runs and the dialogue agrees. Tells when that fails, or when the service can
    /// be neither stopped nor started here.
    void offer_stop(std::chrono::milliseconds limit);
    /// After the values were written: starts a stopped service again (asking, unless a restart was agreed to
    /// before), or tells that somebody else has to do it. Waits until it runs, unless `limit` is zero.
    void offer_start(std::chrono::milliseconds limit);

private:
    /// The system's code of the call that failed; 0 when the time ran out. Nothing after success.
    using Failure = std::optional<DWORD>;

    struct Absence {
        ServiceTrouble trouble;
        DWORD code;
    };

    bool query();
    bool is_stopped() const { return status_.dwCurrentState == SERVICE_STOPPED; }
    bool is_starting() const { return status_.dwCurrentState == SERVICE_START_PENDING; }
    Failure stop(std::chrono::milliseconds limit);
    Failure start(std::chrono::milliseconds limit);
    Failure wait_while_starting(std::chrono::milliseconds limit);
    template <typename Done> Failure wait_until(std::chrono::milliseconds limit, Done done);
    void start_telling(std::chrono::milliseconds limit);

    RestartDialogue& dialogue_;
    ServiceHandle manager_;
    ServiceHandle service_;
    SERVICE_STATUS status_{};
    /// Why there is no service to control; nothing when there is one that told its state.
    std::optional<Absence> absence_;
    bool restart_agreed_ = false;
};
