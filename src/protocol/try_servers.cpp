#include "protocol/try_servers.h"

#include "base/exceptions.h"
#include "protocol/negotiation.h"

#include <algorithm>
#include <vector>

namespace {

void try_server(const std::string& host, std::uint16_t port, const AgentIdentity& agent,
                TrialListener& listener) {
    listener.trying(host, port);
    listener.tried(host, port,
                   connect_and_negotiate(host.c_str(), port, agent.name.c_str(), agent.domain.c_str(),
                                         nullptr, nullptr));
}

bool goes_on_after(const ServerItem& item, std::uint16_t default_port, const AgentIdentity& agent,
                   TrialListener& listener) {
    std::uint16_t port = 0;
    try {
        port = server_port(item, default_port);
    } catch (const error::EParseError&) {
        return listener.bad_port(item);
    }
    try_server(item.host, port, agent, listener);
    return true;
}

} // namespace

std::uint16_t server_port(const ServerItem& item, std::uint16_t default_port) {
    return item.port_text ? static_cast<std::uint16_t>(parse_int(*item.port_text)) : default_port;
}

bool try_servers(const std::string& server_list, std::uint16_t default_port, const AgentIdentity& agent,
                 TrialListener& listener) {
    std::vector<std::string> items;
    split_string(items, server_list, ',', false);
    return std::all_of(items.begin(), items.end(), [&](const std::string& text) {
        return goes_on_after(split_server_item(text), default_port, agent, listener);
    });
}
