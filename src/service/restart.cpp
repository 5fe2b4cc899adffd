#include "service/restart.h"

#include "service/service_handle.h"

#include <optional>

using std::chrono::milliseconds;

namespace {

constexpr milliseconds pass_length(10);
constexpr int passes_per_query = 100;

/// A service during the sequence: opened once, queried, stopped and started again.
class AgentService {
public:
    AgentService(const Writing& writing, RestartDialogue& dialogue);

    /// Stops the service if it runs and the dialogue agrees. Tells when that fails, or when the service can
    /// be neither stopped nor started here.
    void offer_stop(milliseconds limit);
    /// After the values were written: starts a stopped service again (asking, unless a restart was agreed to
    /// before), or reports that the user has to do it. Waits until it runs, unless `limit` is zero.
    void offer_start(milliseconds limit);

private:
    /// The system's code of the call that failed; 0 when the time ran out. Nothing after success.
    using Failure = std::optional<DWORD>;

    struct Trouble {
        ServiceTrouble trouble;
        DWORD code;
    };

    bool query() { return QueryServiceStatus(service_.get(), &status_) != FALSE; }
    bool is_stopped() const { return status_.dwCurrentState == SERVICE_STOPPED; }
    bool is_starting() const { return status_.dwCurrentState == SERVICE_START_PENDING; }
    std::optional<Trouble> stop(milliseconds limit);
    Failure start(milliseconds limit);
    Failure wait_while_starting(milliseconds limit);
    template <typename Done> Failure wait_until(milliseconds limit, Done done);
    void start_telling(milliseconds limit);

    RestartDialogue& dialogue_;
    ServiceHandle manager_;
    ServiceHandle service_;
    SERVICE_STATUS status_{};
    /// Why the service cannot be controlled; empty if it can.
    std::optional<Trouble> absence_;
    bool restart_agreed_ = false;
};

AgentService::AgentService(const Writing& writing, RestartDialogue& dialogue)
    : dialogue_(dialogue), manager_(OpenSCManagerA(nullptr, nullptr, writing.manager_access)) {
    if (!manager_) {
        absence_ = {ServiceTrouble::unreachable, GetLastError()};
        return;
    }
    service_ =
        ServiceHandle(OpenServiceA(manager_.get(), writing.service_name.c_str(), writing.service_access));
    if (!service_) {
        absence_ = {ServiceTrouble::unknown, GetLastError()};
        manager_ = ServiceHandle();
    } else if (!query()) {
        absence_ = {ServiceTrouble::unreachable, GetLastError()};
    }
}

void AgentService::offer_stop(milliseconds limit) {
    if (absence_)
        return dialogue_.tell(absence_->trouble, absence_->code);
    if (is_stopped())
        return;
    restart_agreed_ = dialogue_.agrees_to_restart();
    if (!restart_agreed_)
        return;
    std::optional<Trouble> trouble;
    dialogue_.while_stopping([&] { trouble = stop(limit); });
    if (trouble)
        dialogue_.tell(trouble->trouble, trouble->code);
}

std::optional<AgentService::Trouble> AgentService::stop(milliseconds limit) {
    if (!ControlService(service_.get(), SERVICE_CONTROL_STOP, &status_))
        return Trouble{ServiceTrouble::stop_refused, GetLastError()};
    if (const Failure failure = wait_until(limit, [this] { return is_stopped(); }))
        return Trouble{ServiceTrouble::not_stopped, *failure};
    return std::nullopt;
}

template <typename Done> AgentService::Failure AgentService::wait_until(milliseconds limit, Done done) {
    for (auto passes = limit / pass_length; !done() && passes >= 1;) {
        --passes;
        Sleep(static_cast<DWORD>(pass_length.count()));
        if (passes % passes_per_query == 0 && !query())
            return GetLastError();
        dialogue_.pass();
    }
    return done() ? Failure() : Failure(DWORD{0});
}

void AgentService::offer_start(milliseconds limit) {
    if (!service_)
        return;
    const bool known = query();
    const DWORD code = known ? 0 : GetLastError();
    if (known && is_stopped()) {
        if (restart_agreed_ || dialogue_.agrees_to_start())
            start_telling(limit);
    } else if (!absence_) {
        dialogue_.tell(ServiceTrouble::not_restarted, code);
    }
}

void AgentService::start_telling(milliseconds limit) {
    Failure failure;
    dialogue_.while_starting([&] { failure = start(limit); });
    if (failure)
        dialogue_.tell(ServiceTrouble::not_started, *failure);
}

AgentService::Failure AgentService::start(milliseconds limit) {
    if (!StartServiceA(service_.get(), 0, nullptr))
        return GetLastError();
    return limit == milliseconds::zero() ? Failure() : wait_while_starting(limit);
}

/// A service that fails while it starts is stopped again and has an exit code.
AgentService::Failure AgentService::wait_while_starting(milliseconds limit) {
    if (!query())
        return GetLastError();
    if (const Failure failure = wait_until(limit, [this] { return !is_starting(); }))
        return failure;
    return is_stopped() ? Failure(status_.dwWin32ExitCode) : Failure();
}

} // namespace

void restart_around(const Writing& writing, RestartDialogue& dialogue) {
    if (writing.service_name.empty() || !writing.any()) {
        writing.write();
        return;
    }
    AgentService service(writing, dialogue);
    service.offer_stop(writing.stop_limit);
    writing.write();
    service.offer_start(writing.start_limit);
}
