#include "protocol/server_item.h"

#include "error/text.h"

ServerItem split_server_item(const std::string& item) {
    const std::size_t colon = item.find(':');
    if (colon == std::string::npos)
        return {item, std::nullopt};
    return {item.substr(0, colon), item.substr(colon + 1)};
}

std::uint16_t server_port(const ServerItem& item, std::uint16_t default_port) {
    return item.port_text ? static_cast<std::uint16_t>(parse_int(*item.port_text)) : default_port;
}
