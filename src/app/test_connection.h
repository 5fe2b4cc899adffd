#pragma once
#include "pages/configuration.h"

#include <cstdint>
#include <string>

/// Tests every server of `server_list` (protocol/try_servers.h), with a wait window around each attempt,
/// and reports in one message box: success, or every server that failed and why. A port that is not a number
/// ends the test at once, with a separate box. An empty `agent_name` stands for the connection's local
/// address.
void testConnection(const std::string& agent_name, const std::string& agent_domain,
                    const std::string& server_list, std::uint16_t default_port);

/// Takes the values of the page that `configuration` shows, gathers the test's parameters from the entries
/// that its spec file names, and runs the test. Throws a text when an entry is missing, holds no text value
/// or, for the port, no decimal number.
void testConnection(const Configuration& configuration);
