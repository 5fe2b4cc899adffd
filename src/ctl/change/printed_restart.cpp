#include "ctl/change/printed_restart.h"

#include "base/messages.h"
#include "ctl/change/journal.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"

namespace ctl {
namespace {

std::string reason(DWORD code) {
    return code == 0 ? std::string()
                     : ": " + to_utf8(system_error_string(code)) + " (" + std::to_string(code) + ")";
}

} // namespace

std::string PrintedRestart::name() const { return "service " + to_utf8(service_); }

bool PrintedRestart::agrees_to_restart() {
    note_restart(service_);
    return true;
}

void PrintedRestart::while_stopping(const std::function<void()>& step) {
    say("stopping " + name(), Level::info);
    step();
}

/// A service that comes here is stopped, even if it was given up before.
void PrintedRestart::while_starting(const std::function<void()>& step) {
    say("starting " + name(), Level::info);
    failure_.clear();
    is_restarted_ = true;
    step();
}

void PrintedRestart::tell(ServiceTrouble trouble, DWORD code) {
    switch (trouble) {
    case ServiceTrouble::unreachable:
    case ServiceTrouble::unknown: be_without_service(code); break;
    case ServiceTrouble::stop_refused:
        if (writes_)
            give_up(code);
        [[fallthrough]];
    case ServiceTrouble::not_stopped: fail_because("did not stop", code); break;
    case ServiceTrouble::not_started: fail_because("did not start", code); break;
    // Told also of a service that did not stop.
    case ServiceTrouble::not_restarted:
        if (failure_.empty())
            fail_because("was not restarted", code);
        break;
    }
}

/// Comes before the writing, and what is thrown keeps the values from being written.
void PrintedRestart::be_without_service(DWORD code) const {
    if (code == ERROR_ACCESS_DENIED)
        throw Failure{access_denied, "access to the " + name() + " is denied"};
    if (code != ERROR_SERVICE_DOES_NOT_EXIST)
        throw Failure{failed, "cannot open the " + name() + reason(code)};
    forget_restart(service_);
    say("there is no " + name() + " to restart" + reason(code), Level::warning);
}

/// Nothing was stopped, so nothing has to be written either.
void PrintedRestart::give_up(DWORD code) const {
    if (!is_pending_)
        forget_restart(service_);
    throw Failure{failed, name() + " refused to stop" + reason(code) +
                              "; use \"--restart never\" to write the values without a restart"};
}

void PrintedRestart::fail_because(const std::string& why, DWORD code) {
    is_restarted_ = false;
    failure_ = name() + " " + why + "; the next set or apply tries again" + reason(code);
}

ExitCode PrintedRestart::finish(bool written) const {
    if (!failure_.empty()) {
        say((written ? "values written, but " : "") + failure_);
        return not_restarted;
    }
    if (is_restarted_)
        forget_restart(service_);
    return as_wished;
}

} // namespace ctl
