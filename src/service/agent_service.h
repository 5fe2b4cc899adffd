#pragma once
#include "service/service_handle.h"

#include <string>

/// The service of one configuration, as far as the apply sequence deals with it: opened once, asked, stopped,
/// started again. `display_name` is the configuration's name, which every message to the user carries.
class AgentService {
public:
    AgentService(std::string display_name, const std::string& service_name);

    /// The service was opened and answered with its state. If not, it can be neither stopped nor started
    /// here.
    bool found() const { return found_; }
    /// Stops the service if it runs and the user agrees.
    void offer_stop();
    /// After the values were written: starts a stopped service again (asking, unless the user agreed to a
    /// restart before), or says that the user has to do it.
    void offer_start();
    /// Says that the service has to be restarted by hand, for want of a service to control.
    void ask_for_manual_restart() const;

private:
    bool query();
    bool is_stopped() const { return status_.dwCurrentState == SERVICE_STOPPED; }
    void stop();
    bool wait_until_stopped();
    bool user_agrees_to_start() const;
    void start();

    std::string display_name_;
    ServiceHandle manager_;
    ServiceHandle service_;
    SERVICE_STATUS status_{};
    bool found_ = false;
    bool restart_agreed_ = false;
};
