#include "ctl/verbs/bounded_network.h"

#include "net/socket.h"

#include <memory>
#include <string>

namespace ctl {
namespace {

/// By `uptime`.
std::chrono::milliseconds give_up_at{};

std::chrono::milliseconds time_left() { return give_up_at - uptime(); }

/// Windows waits for a name server that does not answer as long as it likes, and cannot be told otherwise.
net::HostLookup look_up(const char* name) {
    const auto found = std::make_shared<net::HostLookup>();
    const auto ask = [found, host = std::string(name)] { *found = net::look_up_host(host.c_str()); };
    if (!finishes_within(time_left(), ask))
        return {.failed = true, .code = WSAETIMEDOUT};
    return *found;
}

} // namespace

BoundedNetwork::BoundedNetwork() {
    net::patience = time_left;
    net::host_lookup = look_up;
}

BoundedNetwork::~BoundedNetwork() {
    net::patience = nullptr;
    net::host_lookup = net::look_up_host;
}

void BoundedNetwork::begin(std::chrono::seconds limit) { give_up_at = uptime() + limit; }

} // namespace ctl
