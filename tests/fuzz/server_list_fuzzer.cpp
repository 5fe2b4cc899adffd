/// What a user may type as a server list: the input is the default port (2 octets, most significant first)
/// and the list. Items, hosts and ports must be what a plain reading of the rules gives.
#include "error/exceptions.h"
#include "error/text.h"
#include "protocol/server_item.h"

#include <cstdlib>
#include <cstring>
#include <optional>

namespace {

struct Server {
    std::string host;
    std::optional<std::uint16_t> port; // absent where the port is no number
};

void require(bool holds) {
    if (!holds)
        __builtin_trap();
}

// White space, a sign, digits and nothing else; numbers of more than 32 bits stop at the border.
std::optional<std::uint16_t> plain_port(const std::string& text) {
    std::size_t at = 0;
    if (text.empty())
        return 0;
    while (at < text.size() && std::strchr(" \t\n\v\f\r", text[at]) != nullptr && text[at] != '\0')
        ++at;
    const bool minus = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+'))
        ++at;
    if (at == text.size())
        return std::nullopt;
    std::int64_t value = 0;
    for (; at < text.size(); ++at) {
        if (text[at] < '0' || text[at] > '9')
            return std::nullopt;
        value = value * 10 + (text[at] - '0');
        if (value > 2147483647)
            value = minus ? 2147483648 : 2147483647;
    }
    return static_cast<std::uint16_t>(minus ? -value : value);
}

std::vector<Server> plain_reading(const std::string& list, std::uint16_t default_port) {
    std::vector<Server> servers;
    std::string item;
    for (const char byte : list + ",") {
        if (byte != ',') {
            item += byte;
            continue;
        }
        const char* colon = static_cast<const char*>(std::memchr(item.data(), ':', item.size()));
        const auto host = static_cast<std::size_t>(colon == nullptr ? 0 : colon - item.data());
        if (!item.empty() && colon == nullptr)
            servers.push_back({item, default_port});
        else if (!item.empty())
            servers.push_back({item.substr(0, host), plain_port(item.substr(host + 1))});
        item.clear();
    }
    return servers;
}

Server program_reading(const std::string& text, std::uint16_t default_port) {
    const ServerItem item = split_server_item(text);
    try {
        return {item.host, server_port(item, default_port)};
    } catch (const error::EParseError&) {
        return {item.host, std::nullopt};
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size < 2)
        return 0;
    const auto default_port = static_cast<std::uint16_t>(data[0] << 8 | data[1]);
    const std::string list(reinterpret_cast<const char*>(data) + 2, size - 2);
    std::vector<std::string> items;
    split_string(items, list, ',', false);
    const std::vector<Server> expected = plain_reading(list, default_port);
    require(items.size() == expected.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        const Server server = program_reading(items[i], default_port);
        require(server.host == expected[i].host && server.port == expected[i].port);
    }
    return 0;
}
