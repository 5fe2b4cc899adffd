#include "protocol/connection_test.h"

#include "error/exceptions.h"
#include "error/text.h"
#include "platform/win32.h"
#include "protocol/negotiation.h"
#include "protocol/server_item.h"
#include "service/wait_window.h"

#include <vector>

namespace {

struct Agent {
    const std::string& name;
    const std::string& domain;
};

struct ConnectionFailure {
    std::string host;
    std::uint16_t port;
    std::string reason;
};

void warn(const std::string& text) {
    MessageBoxA(nullptr, text.c_str(), "Error testing connection", MB_ICONEXCLAMATION);
}

void report_bad_port(const ServerItem& item) {
    warn("The server port \"" + item.port_text.value_or("") + "\" for the server \"" + item.host +
         "\" cannot be parsed as a number. Please correct this before testing the connection.");
}

void try_server(const std::string& host, std::uint16_t port, const Agent& agent,
                std::vector<ConnectionFailure>& failures) {
    const HWND wait = open_wait_window("Testing connection to server \"" + host + "\" at port " +
                                       port_text(port) + ". Please be patient.");
    // The reason is copied at once: its buffer is reused by the next messages.
    if (const char* reason = connect_and_negotiate(host.c_str(), port, agent.name.c_str(),
                                                   agent.domain.c_str(), nullptr, nullptr))
        failures.push_back({host, port, reason});
    close_wait_window(wait);
}

// False when a bad port ended the test, which the user then has been told.
bool try_servers(const std::vector<std::string>& items, std::uint16_t default_port, const Agent& agent,
                 std::vector<ConnectionFailure>& failures) {
    for (const std::string& text : items) {
        const ServerItem item = split_server_item(text);
        std::uint16_t port = 0;
        try {
            port = server_port(item, default_port);
        } catch (const error::EParseError&) {
            report_bad_port(item);
            return false;
        }
        try_server(item.host, port, agent, failures);
    }
    return true;
}

void report(const std::vector<ConnectionFailure>& failures) {
    if (failures.empty()) {
        MessageBoxA(
            nullptr,
            "All the Tavrin Servers accepted the settings. The Tavrin Agent will now be able to check "
            "in, once started",
            "Connection test successful", MB_ICONINFORMATION);
        return;
    }
    std::string text;
    for (const ConnectionFailure& failure : failures) {
        if (!text.empty())
            text += "\n\n";
        text += "The connection to the server \"" + failure.host + "\" at port " + port_text(failure.port) +
                " failed. The reason was:\n\n" + failure.reason;
    }
    warn(text);
}

} // namespace

void testConnection(const std::string& agent_name, const std::string& agent_domain,
                    const std::string& server_list, std::uint16_t default_port) {
    std::vector<std::string> items;
    split_string(items, server_list, ',', false);
    std::vector<ConnectionFailure> failures;
    if (try_servers(items, default_port, {agent_name, agent_domain}, failures))
        report(failures);
}
