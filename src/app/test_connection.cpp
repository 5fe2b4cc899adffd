#include "app/test_connection.h"

#include "base/text.h"
#include "protocol/try_servers.h"
#include "window/boxes.h"
#include "window/message_queue.h"
#include "window/top_level.h"
#include "window/wait_window.h"

#include <optional>

namespace {

/// Drops impatient clicks and keys from before the box: they must neither answer it nor start a second test.
/// This is also needed if there was no server to wait for.
void tell(const BoxDescription& box) {
    drop_input(main_window);
    show_box(box);
}

void warn(const std::string& text) {
    tell({.text = text, .caption = "Error testing connection", .style = MB_ICONEXCLAMATION});
}

/// Shows the user the progress and the failures of a test.
class ShownTest final : public TrialListener {
public:
    void trying(const std::string& host, std::uint16_t port) override {
        wait_.emplace("Testing connection to server \"" + host + "\" at port " + port_text(port) +
                      ". Please be patient.");
    }
    void tried(const std::string& host, std::uint16_t port, const char* problem) override {
        if (problem != nullptr) {
            add_failure("The connection to the server \"" + host + "\" at port " + port_text(port) +
                        " failed. The reason was:\n\n" + problem);
        }
        wait_->close();
    }
    bool bad_port(const ServerItem& item) override {
        warn("The server port \"" + item.port_text.value_or("") + "\" for the server \"" + item.host +
             "\" cannot be parsed as a number. Please correct this before testing the connection.");
        return false;
    }
    void show_result() const {
        if (failures_.empty()) {
            tell({.text = "All the Tavrin Servers accepted the settings. The Tavrin Agent will now be able "
                          "to check in, once started",
                  .caption = "Connection test successful",
                  .style = MB_ICONINFORMATION});
        } else {
            warn(failures_);
        }
    }

private:
    void add_failure(const std::string& paragraph) {
        failures_ += (failures_.empty() ? "" : "\n\n") + paragraph;
    }

    std::optional<WaitWindow> wait_;
    std::string failures_;
};

} // namespace

void testConnection(const std::string& agent_name, const std::string& agent_domain,
                    const std::string& server_list, std::uint16_t default_port) {
    ShownTest shown;
    if (try_servers(server_list, default_port, {agent_name, agent_domain}, shown))
        shown.show_result();
}

void testConnection(const Configuration& configuration) {
    if (configuration.shown_entry != nullptr)
        configuration.shown_entry->takeValue();
    const std::string agent_name = configuration.text_by_title(configuration.agent_name_title);
    const std::string agent_domain = configuration.text_by_title(configuration.agent_domain_title);
    const std::string server_list = configuration.text_by_title(configuration.server_list_title);
    const auto default_port =
        static_cast<std::uint16_t>(configuration.integer_by_title(configuration.default_port_title));
    testConnection(agent_name, agent_domain, server_list, default_port);
}
