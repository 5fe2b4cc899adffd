#include "net/discovery.h"

#include "error/messages.h"
#include "net/address_block.h"
#include "net/discovery_packet.h"
#include "net/udp.h"

namespace {

constexpr int passes = 3;
constexpr int silence_seconds = 1;
constexpr const char* out_of_memory = "Out of memory";

/// The scan's socket, closed on every path.
struct ScanSocket : Socket {
    ScanSocket() = default;
    ScanSocket(const ScanSocket&) = delete;
    ScanSocket& operator=(const ScanSocket&) = delete;
    ~ScanSocket() { udp_close(*this); }
};

const char* send_requests(Socket& socket, const net::Interface* networks, std::uint16_t port) {
    const auto request = net::discovery_request();
    for (const net::Interface* each = networks; each->name[0] != '\0'; ++each) {
        if (const char* message = udp_send_to(socket, each->broadcast, port, request.data(), request.size()))
            return message;
    }
    return nullptr;
}

/// Such a failure is about one datagram; the socket goes on.
bool concerns_one_datagram(int code) {
    return code == WSAEMSGSIZE || code == WSAENETRESET || code == WSAECONNRESET;
}

const char* receive_answer(Socket& socket, net::AddressBlock& found) {
    unsigned char octets[4096];
    std::size_t length = sizeof octets;
    std::uint32_t sender = 0;
    std::uint16_t port = 0;
    if (const char* message = udp_receive_from(socket, &sender, &port, octets, &length))
        return concerns_one_datagram(WSAGetLastError()) ? nullptr : message;
    if (length < net::shortest_answer) {
        // Formatted for whoever debugs this line; deliberately not reported.
        format_error("Message too short: %zu", length);
        return nullptr;
    }
    if (net::is_discovery_answer(octets, length) && !found.add(sender))
        return out_of_memory;
    return nullptr;
}

const char* receive_answers(Socket& socket, net::AddressBlock& found) {
    const auto end = GetTickCount64() + static_cast<std::uint64_t>(scan_pass_limit) * 1000;
    while (socket_wait_readable(socket, silence_seconds) && GetTickCount64() < end) {
        if (const char* message = receive_answer(socket, found))
            return message;
    }
    return nullptr;
}

const char* run_passes(const net::Interface* networks, std::uint16_t port, net::AddressBlock& found) {
    ScanSocket socket;
    if (!udp_open(&socket))
        return "Could not create socket";
    if (const char* message = udp_enable_broadcast(socket, true))
        return message;
    for (int pass = 0; pass < passes; ++pass) {
        if (const char* message = send_requests(socket, networks, port))
            return message;
        if (const char* message = receive_answers(socket, found))
            return message;
    }
    return nullptr;
}

const char* scan_into(net::AddressBlock& found, const net::Interface* networks, std::uint16_t port,
                      char** found_servers) {
    if (const char* message = run_passes(networks, port, found))
        return message;
    *found_servers = found.finish();
    return *found_servers != nullptr ? nullptr : out_of_memory;
}

} // namespace

const char* scan_servers(std::uint16_t port, char** found_servers) {
    if (found_servers == nullptr)
        return "found_servers must not be NULL";
    *found_servers = nullptr;
    net::AddressBlock found;
    if (!found.open())
        return out_of_memory;
    const net::InterfaceList networks = net::list_interfaces();
    if (networks == nullptr)
        return "No memory for small nic structure";
    return scan_into(found, networks.get(), port, found_servers);
}

const char* net::scan_networks(const Interface* networks, std::uint16_t port, char** found_servers) {
    *found_servers = nullptr;
    AddressBlock found;
    return found.open() ? scan_into(found, networks, port, found_servers) : out_of_memory;
}
