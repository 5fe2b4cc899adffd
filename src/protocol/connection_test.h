#pragma once
#include <cstdint>
#include <string>

/// Negotiates with every server of `server_list` (items separated by commas, each `host` or `host:port`) in
/// turn and reports in one message box: success, or every server that failed and why. A port that is not a
/// number ends the test at once with a box of its own. Blocks, with a wait window, until it is done. An empty
/// `agent_name` stands for the connection's local address.
void testConnection(const std::string& agent_name, const std::string& agent_domain,
                    const std::string& server_list, std::uint16_t default_port);
