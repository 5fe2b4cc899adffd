#include "app/apply_changes.h"

#include "service/restart.h"
#include "window/boxes.h"
#include "window/message_queue.h"
#include "window/top_level.h"
#include "window/wait_window.h"

#include <cstdio>

namespace {

/// Shows the restart to the user of the main window. `name` is the configuration's name, for the messages.
class RestartBoxes final : public RestartDialogue {
public:
    explicit RestartBoxes(const std::string& name) : name_(name) {}

    bool agrees_to_restart() override;
    bool agrees_to_start() override;
    void while_stopping(const std::function<void()>& step) override;
    void while_starting(const std::function<void()>& step) override;
    void pass() override { pump_one_message(); }
    void tell(ServiceTrouble trouble, DWORD code) override;

private:
    const std::string& name_;
};

int show(const std::string& text, const std::string& caption, UINT style) {
    return show_box({.owner = main_window, .text = text, .caption = caption, .style = style});
}

void wait_for(const char* text, const std::function<void()>& step) {
    const WaitWindow wait_window(text);
    step();
}

bool RestartBoxes::agrees_to_restart() {
    return show("The " + name_ +
                    " Service is currently started. In order for the changes to be effectuated, the service "
                    "will have to be restarted. Do you wish to do this now?",
                "Restart " + name_ + " Service?", MB_YESNO | MB_ICONQUESTION) == IDYES;
}

bool RestartBoxes::agrees_to_start() {
    return show("The " + name_ + " service is stopped. Do you want to start it?",
                "Start " + name_ + " service?", MB_YESNO | MB_ICONQUESTION) == IDYES;
}

void RestartBoxes::while_stopping(const std::function<void()>& step) {
    std::fputs("Stopping service\n", stderr);
    wait_for("Please wait while stopping service....", step);
}

void RestartBoxes::while_starting(const std::function<void()>& step) {
    wait_for("Please wait while starting service....", step);
}

void RestartBoxes::tell(ServiceTrouble trouble, DWORD) {
    switch (trouble) {
    case ServiceTrouble::unknown: std::fputs("Unable to find agent service\n", stderr); [[fallthrough]];
    case ServiceTrouble::unreachable:
        show("You have changed the configuration of the " + name_ +
                 ". In order for these changes to be effectuated, you will have to restart the " + name_ +
                 " service manually.",
             "Service must be restarted manually", MB_ICONEXCLAMATION);
        return;
    case ServiceTrouble::stop_refused:
    case ServiceTrouble::not_stopped:
        show("Failed to stop service. You will have to restart the service manually, in order to effectuate "
             "the changes",
             "Stopping service failed", MB_ICONERROR);
        return;
    case ServiceTrouble::not_started:
        show("The service could not be started. Please start the " + name_ + " service manually.",
             "Error starting service", MB_ICONERROR);
        return;
    case ServiceTrouble::not_restarted:
        show("The service could not be automatically restarted. Please start the " + name_ +
                 " service manually.",
             "Error restarting service", MB_ICONERROR);
        return;
    }
}

void write_changed_entries(Configuration& configuration) {
    for (const auto& [item, entry] : configuration.entry_items) {
        if (entry->changed())
            entry->write();
    }
    configuration.changed_entries.clear();
}

} // namespace

void apply_changes(Configuration& configuration) {
    RestartBoxes boxes(configuration.name);
    // Without a service, the controls are not read again: the values of the last update of the buttons count.
    restart_around({.service_name = configuration.serviceName,
                    .any = [&] { return configuration.has_changes(); },
                    .write = [&] { write_changed_entries(configuration); }},
                   boxes);
}
