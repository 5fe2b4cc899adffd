#include "net/discovery.h"

#include "base/messages.h"
#include "base/text.h"
#include "net/address_text.h"
#include "net/udp.h"

#include <cstring>

namespace net {
namespace {

constexpr int passes = 3;
constexpr const char* out_of_memory = "Out of memory";

constexpr std::uint32_t magic = 0x12345678;
/// Both words are sent, and an answer must have the second one. They have no further meaning.
constexpr std::uint32_t first_constant = 5153;
constexpr std::uint32_t second_constant = 5;
constexpr std::uint32_t kind_request = 1;
constexpr std::uint32_t kind_answer = 2;

void put_word(unsigned char* octets, std::uint32_t word) {
    for (int shift = 24; shift >= 0; shift -= 8)
        *octets++ = static_cast<unsigned char>(word >> shift);
}

std::uint32_t word_at(const unsigned char* octets) {
    std::uint32_t word = 0;
    for (int i = 0; i < 4; ++i)
        word = (word << 8) | octets[i];
    return word;
}

const char* send_requests(Socket& socket, const Interface* networks, std::uint16_t port) {
    const auto request = discovery_request();
    for (const Interface* each = networks; each->name[0] != '\0'; ++each) {
        if (const char* problem = udp_send_to(socket, each->broadcast, port, request.data(), request.size()))
            return problem;
    }
    return nullptr;
}

/// Such a failure concerns only one datagram, and the socket can still receive others.
bool concerns_one_datagram(int code) {
    return code == WSAEMSGSIZE || code == WSAENETRESET || code == WSAECONNRESET;
}

const char* receive_answer(Socket& socket, AddressBlock& found) {
    unsigned char octets[4096];
    std::size_t length = sizeof octets;
    std::uint32_t sender = 0;
    std::uint16_t port = 0;
    if (const char* problem = udp_receive_from(socket, &sender, &port, octets, &length))
        return concerns_one_datagram(WSAGetLastError()) ? nullptr : problem;
    if (is_discovery_answer(octets, length))
        return found.add(sender) ? nullptr : out_of_memory;
    if (length < shortest_answer)
        format_error("Message too short: %zu", length); // for a debugger; deliberately not reported
    return nullptr;
}

const char* receive_answers(Socket& socket, AddressBlock& found, const ScanWaits& waits) {
    const auto end = GetTickCount64() + static_cast<std::uint64_t>(waits.pass) * 1000;
    while (socket_wait_readable(socket, waits.silence) && GetTickCount64() < end) {
        if (const char* problem = receive_answer(socket, found))
            return problem;
    }
    return nullptr;
}

const char* run_passes(const Interface* networks, std::uint16_t port, AddressBlock& found,
                       const ScanWaits& waits) {
    OwnedSocket<udp_close> socket;
    if (!udp_open(&socket))
        return "Could not create socket";
    if (const char* problem = udp_enable_broadcast(socket, true))
        return problem;
    for (int pass = 0; pass < passes; ++pass) {
        if (const char* problem = send_requests(socket, networks, port))
            return problem;
        if (const char* problem = receive_answers(socket, found, waits))
            return problem;
    }
    return nullptr;
}

} // namespace

std::array<unsigned char, 20> discovery_request() {
    std::array<unsigned char, 20> request{};
    put_word(&request[0], magic);
    put_word(&request[4], first_constant);
    put_word(&request[8], second_constant);
    put_word(&request[12], kind_request);
    put_word(&request[16], crc32(request.data(), 16));
    return request;
}

bool is_discovery_answer(const unsigned char* octets, std::size_t length) {
    return length >= shortest_answer && word_at(octets) == magic && word_at(octets + 8) == second_constant &&
           word_at(octets + 12) == kind_answer;
}

} // namespace net

const char* scan_servers(std::uint16_t port, char** found_servers, const net::ScanWaits& waits,
                         const net::Interface* networks) {
    if (found_servers == nullptr)
        return "found_servers must not be NULL";
    *found_servers = nullptr;
    net::AddressBlock found;
    if (!found.open())
        return net::out_of_memory;
    const net::InterfaceList own = networks == nullptr ? net::list_interfaces() : nullptr;
    if (networks == nullptr && own == nullptr)
        return "No memory for small nic structure";
    if (const char* problem = net::run_passes(own != nullptr ? own.get() : networks, port, found, waits))
        return problem;
    *found_servers = found.finish();
    return *found_servers != nullptr ? nullptr : net::out_of_memory;
}

std::string join_found_servers(const char* found_servers) {
    std::string list;
    for (const char* server = found_servers; *server != '\0'; server += std::strlen(server) + 1) {
        if (!list.empty())
            list += ',';
        list += server;
    }
    return list;
}
