/// What a user may type as a server list: the input is the default port (2 octets, most significant first)
/// and the list. Items, hosts and ports must be what a plain reading of the rules gives.
#include "base/exceptions.h"
#include "base/text.h"
#include "fuzz/input.h"
#include "fuzz/plain_number.h"
#include "protocol/try_servers.h"
#include "specfile/value_text.h"

#include <algorithm>
#include <cstring>

namespace {

struct Server {
    std::string host;
    std::optional<std::uint16_t> port; // absent where the port is no number
};

std::optional<std::uint16_t> plain_port(const std::string& text) {
    const std::optional<std::int32_t> number = plain_number(text);
    return number ? std::optional(static_cast<std::uint16_t>(*number)) : std::nullopt;
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
        if (!item.empty() && colon == nullptr) {
            servers.push_back({item, default_port});
        } else if (!item.empty()) {
            servers.push_back({item.substr(0, host), plain_port(item.substr(host + 1))});
        }
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

/// At most five digits, and 16 bits.
bool is_plain_port(const std::string& text) {
    int port = 0;
    for (const char byte : text) {
        if (byte < '0' || byte > '9')
            return false;
        port = std::min(port * 10 + (byte - '0'), 0x10000);
    }
    return port <= 0xFFFF && text.size() <= 5;
}

/// A list that is set without a page names a server in each item, has no blanks, and ports of 16 bits only.
bool is_refused(const std::string& list) {
    std::vector<std::string> items;
    split_string(items, list, ',', false);
    const auto is_bad = [](const std::string& item) {
        const ServerItem server = split_server_item(item);
        return server.host.empty() || item.find_first_of(" \t\r\n") != std::string::npos ||
               !is_plain_port(server.port_text.value_or(""));
    };
    return list.size() > 1023 || list.find('\0') != std::string::npos ||
           std::any_of(items.begin(), items.end(), is_bad);
}

void check_without_a_page(const std::string& list) {
    Declaration declaration;
    declaration.kind = find_entry_kind("ServerList");
    require(value_problem(declaration, list).has_value() == is_refused(list));
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
    check_without_a_page(list);
    return 0;
}
