#pragma once
#include <cstdint>
#include <optional>
#include <string>

/// One item of a server list: `host` or `host:port`. Blanks belong to the host.
struct ServerItem {
    std::string host;
    std::optional<std::string> port_text; // absent without a colon; everything behind the first one
};

ServerItem split_server_item(const std::string& item);

/// The low 16 bits of the item's port, or `default_port` where it names none. An empty port text is port 0.
/// Throws error::EParseError for a port text that is not a whole decimal number.
std::uint16_t server_port(const ServerItem& item, std::uint16_t default_port);
