#pragma once
/// Finds servers on the local networks: sends a broadcast on every IPv4 network, three times, and collects
/// the senders of the answers.
///
/// A pass lasts as long as datagrams arrive less than a second apart, but no longer than a minute: endless
/// answers must not block the user's window for ever. The servers found until then are the result. This also
/// limits the memory, to the distinct senders that can answer in that time.
///
/// A datagram that cannot be received (too large, or a report that a port is closed or that a packet's time
/// to live expired) is dropped like one that is too short. Any other failure to receive ends the scan with
/// its text, as a failure to send does.
///
/// The datagrams (all words are unsigned, 32 bits, in network byte order):
///
///     offset  request                          answer
///     0       0x12345678                       0x12345678
///     4       5153                             not examined
///     8       5                                5
///     12      1                                2
///     16      CRC-32 of the 16 octets before   anything, or the datagram's end
#include "net/interfaces.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace net {

/// How long a scan listens, in seconds.
struct ScanWaits {
    int silence = 1; // a pass ends when nothing has arrived for this long,
    int pass = 60;   // or when it has lasted this long
};

/// An answer is at least this long.
inline constexpr std::size_t shortest_answer = 16;

/// The octets of a request, which are always the same.
std::array<unsigned char, 20> discovery_request();

/// Whether these octets are a server's answer. Nothing else is read from them: only the sender matters.
bool is_discovery_answer(const unsigned char* octets, std::size_t length);

} // namespace net

/// Scans `networks` at `port`, or all networks of this machine if `networks` is null. On success, returns
/// null and sets `*found_servers` to the list of addresses in the order of their first answers, each ended by
/// a zero byte, and the list by one more; the caller frees it with free(). On failure, returns the reason and
/// sets `*found_servers` to null.
const char* scan_servers(std::uint16_t port, char** found_servers, const net::ScanWaits& waits = {},
                         const net::Interface* networks = nullptr);

/// The servers that a scan found, separated by commas as in a server list.
std::string join_found_servers(const char* found_servers);
