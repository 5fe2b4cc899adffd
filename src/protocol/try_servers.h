#pragma once
/// Tests whether every server of a list accepts this agent. The test reports to a listener and shows nothing
/// itself.
#include "base/text.h"

#include <cstdint>
#include <string>

/// How the agent presents itself. An empty name stands for the connection's local address.
struct AgentIdentity {
    std::string name;
    std::string domain;
};

/// The low 16 bits of the item's port, or `default_port` if it has none. An empty port text is port 0.
/// Throws error::EParseError for a port text that is not a whole decimal number.
std::uint16_t server_port(const ServerItem& item, std::uint16_t default_port);

/// Receives the progress of a test.
class TrialListener {
public:
    /// An attempt begins.
    virtual void trying(const std::string& host, std::uint16_t port) = 0;
    /// The attempt is over. `problem` is null when the server accepted; its text is valid during this call.
    virtual void tried(const std::string& host, std::uint16_t port, const char* problem) = 0;
    /// The item's port is not a number. False ends the test.
    virtual bool bad_port(const ServerItem& item) = 0;

protected:
    ~TrialListener() = default;
};

/// Negotiates with the servers of `server_list`, whose items are separated by commas, one after the other.
/// Parses each port just before its server is tried, so the servers before a bad port have been tried. False
/// when a bad port ended the test.
bool try_servers(const std::string& server_list, std::uint16_t default_port, const AgentIdentity& agent,
                 TrialListener& listener);
