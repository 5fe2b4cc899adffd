#include "service/agent_service.h"

using std::chrono::milliseconds;

namespace {
constexpr milliseconds pass_length(10);
constexpr int passes_per_query = 100;
} // namespace

AgentService::AgentService(const std::string& name, RestartDialogue& dialogue)
    : dialogue_(dialogue), manager_(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS)) {
    if (!manager_) {
        absence_ = {ServiceTrouble::unreachable, GetLastError()};
        return;
    }
    service_ = ServiceHandle(OpenServiceA(manager_.get(), name.c_str(), SERVICE_ALL_ACCESS));
    if (!service_) {
        absence_ = {ServiceTrouble::unknown, GetLastError()};
        manager_ = ServiceHandle();
    } else if (!query()) {
        absence_ = {ServiceTrouble::unreachable, GetLastError()};
    }
}

bool AgentService::query() { return QueryServiceStatus(service_.get(), &status_) != FALSE; }

void AgentService::offer_stop(milliseconds limit) {
    if (absence_)
        return dialogue_.tell(absence_->trouble, absence_->code);
    if (is_stopped())
        return;
    restart_agreed_ = dialogue_.agrees_to_restart();
    if (!restart_agreed_)
        return;
    Failure failure;
    dialogue_.while_stopping([&] { failure = stop(limit); });
    if (failure)
        dialogue_.tell(ServiceTrouble::not_stopped, *failure);
}

AgentService::Failure AgentService::stop(milliseconds limit) {
    if (!ControlService(service_.get(), SERVICE_CONTROL_STOP, &status_))
        return GetLastError();
    return wait_until(limit, [this] { return is_stopped(); });
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

/// A service that gives up while it starts is stopped again and says why.
AgentService::Failure AgentService::wait_while_starting(milliseconds limit) {
    if (!query())
        return GetLastError();
    if (const Failure failure = wait_until(limit, [this] { return !is_starting(); }))
        return failure;
    return is_stopped() ? Failure(status_.dwWin32ExitCode) : Failure();
}
