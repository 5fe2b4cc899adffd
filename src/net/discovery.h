#pragma once
/// Finds servers on the local networks: a broadcast on every IPv4 network, three times, and whoever answers
/// is one.
///
/// A pass goes on for as long as datagrams come less than a second apart, but no longer than
/// `scan_pass_limit`: answers that never end must not hold the user's window for ever. What was found until
/// then counts. Memory is bounded likewise, by the distinct senders that can answer in that time.
///
/// A datagram that cannot be received (too large, or a note that a port is closed or that a packet's time to
/// live is over) is dropped like one that is too short. Any other failure to receive ends the scan with its
/// text, as a failure to send does.
#include "net/interfaces.h"

#include <cstdint>

/// How many seconds one pass may last at most. Only a test changes it.
inline int scan_pass_limit = 60;

/// Scans all networks of this machine at `port`. On success (null) `*found_servers` is the list of addresses,
/// each ended by a zero byte, in the order of their first answers, ended by one more zero byte; the caller
/// frees it with free(). On failure the text says why and `*found_servers` is null.
const char* scan_servers(std::uint16_t port, char** found_servers);

namespace net {

/// The same on the given networks only.
const char* scan_networks(const Interface* networks, std::uint16_t port, char** found_servers);

} // namespace net
