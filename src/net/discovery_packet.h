#pragma once
/// The datagrams of server discovery. All words are unsigned, 32 bits, in network byte order.
///
///   offset  request                          answer
///   0       0x12345678                       0x12345678
///   4       5153                             not examined
///   8       5                                5
///   12      1                                2
///   16      CRC-32 of the 16 octets before   anything, or the datagram's end
#include <array>
#include <cstddef>

namespace net {

/// An answer is at least this long.
inline constexpr std::size_t shortest_answer = 16;

std::array<unsigned char, 20> discovery_request();

/// True when these octets are a server's answer. Who sent them is what counts, so nothing else is taken from
/// them.
bool is_discovery_answer(const unsigned char* octets, std::size_t length);

} // namespace net
