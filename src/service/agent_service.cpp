#include "service/agent_service.h"

#include "service/wait_window.h"
#include "window/boxes.h"
#include "window/main_handle.h"

#include <cstdio>
#include <utility>

namespace {

constexpr int kStopPasses = 6000;
constexpr DWORD kPassMilliseconds = 10;
constexpr int kPassesPerQuery = 100;

int show(const std::string& text, const std::string& caption, UINT style) {
    return show_box({.owner = main_window, .text = text, .caption = caption, .style = style});
}

} // namespace

AgentService::AgentService(std::string display_name, const std::string& service_name)
    : display_name_(std::move(display_name)),
      manager_(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS)) {
    if (!manager_)
        return;
    service_ = ServiceHandle(OpenServiceA(manager_.get(), service_name.c_str(), SERVICE_ALL_ACCESS));
    if (!service_) {
        std::fputs("Unable to find agent service\n", stderr);
        manager_ = ServiceHandle();
        return;
    }
    found_ = query();
}

bool AgentService::query() { return QueryServiceStatus(service_.get(), &status_) != FALSE; }

void AgentService::offer_stop() {
    if (is_stopped())
        return;
    restart_agreed_ = show("The " + display_name_ +
                               " Service is currently started. In order for the changes to be effectuated, "
                               "the service will have to "
                               "be restarted. Do you wish to do this now?",
                           "Restart " + display_name_ + " Service?", MB_YESNO | MB_ICONQUESTION) == IDYES;
    if (restart_agreed_)
        stop();
}

void AgentService::stop() {
    std::fputs("Stopping service\n", stderr);
    WaitWindow wait_window("Please wait while stopping service....");
    const bool stopped =
        ControlService(service_.get(), SERVICE_CONTROL_STOP, &status_) != FALSE && wait_until_stopped();
    wait_window.close();
    if (!stopped) {
        show("Failed to stop service. You will have to restart the service manually, in order to effectuate "
             "the changes",
             "Stopping service failed", MB_ICONERROR);
    }
}

bool AgentService::wait_until_stopped() {
    for (int counter = kStopPasses; !is_stopped() && counter >= 1;) {
        --counter;
        Sleep(kPassMilliseconds);
        if (counter % kPassesPerQuery == 0 && !query())
            return false;
        pump_one_message();
    }
    return is_stopped();
}

void AgentService::offer_start() {
    if (!service_)
        return;
    if (query() && is_stopped()) {
        if (restart_agreed_ || user_agrees_to_start())
            start();
        return;
    }
    // Deliberately said also to a user who declined the restart and whose service simply kept running.
    if (found_) {
        show("The service could not be automatically restarted. Please start the " + display_name_ +
                 " service manually.",
             "Error restarting service", MB_ICONERROR);
    }
}

bool AgentService::user_agrees_to_start() const {
    return show("The " + display_name_ + " service is stopped. Do you want to start it?",
                "Start " + display_name_ + " service?", MB_YESNO | MB_ICONQUESTION) == IDYES;
}

void AgentService::start() {
    WaitWindow wait_window("Please wait while starting service....");
    const bool started = StartServiceA(service_.get(), 0, nullptr) != FALSE;
    wait_window.close();
    if (!started) {
        show("The service could not be started. Please start the " + display_name_ + " service manually.",
             "Error starting service", MB_ICONERROR);
    }
}

void AgentService::ask_for_manual_restart() const {
    show("You have changed the configuration of the " + display_name_ +
             ". In order for these changes to be effectuated, you will have to restart the " + display_name_ +
             " service manually.",
         "Service must be restarted manually", MB_ICONEXCLAMATION);
}
