#pragma once
/// Whether every server of a list accepts this agent. The test asks the servers and tells a listener; it
/// shows nothing itself.
#include <cstdint>
#include <optional>
#include <string>

/// How the agent presents itself. An empty name stands for the connection's local address.
struct AgentIdentity {
    std::string name;
    std::string domain;
};

/// One item of a server list: `host` or `host:port`. Blanks belong to the host.
struct ServerItem {
    std::string host;
    std::optional<std::string> port_text; // absent without a colon; everything behind the first one
};

/// Takes an item apart.
ServerItem split_server_item(const std::string& item);

/// The low 16 bits of the item's port, or `default_port` where it names none. An empty port text is port 0.
/// Throws error::EParseError for a port text that is not a whole decimal number.
std::uint16_t server_port(const ServerItem& item, std::uint16_t default_port);

/// Is told how a test goes.
class TrialListener {
public:
    /// An attempt begins.
    virtual void trying(const std::string& host, std::uint16_t port) = 0;
    /// The attempt is over. `problem` is null when the server accepted; its text is gone once this returns.
    virtual void tried(const std::string& host, std::uint16_t port, const char* problem) = 0;
    /// The item's port is no number, which ends the test.
    virtual void bad_port(const ServerItem& item) = 0;

protected:
    ~TrialListener() = default;
};

/// Negotiates with every server of `server_list`, whose items are separated by commas, in turn. Each port is
/// looked at when its server's turn comes, so those before a bad one have been tried. False when a bad port
/// ended the test.
bool try_servers(const std::string& server_list, std::uint16_t default_port, const AgentIdentity& agent,
                 TrialListener& listener);
