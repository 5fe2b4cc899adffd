#pragma once
/// The dotted form of an address, which has at most 15 characters.
#include <cstdint>

namespace net {

/// `address` is in network byte order.
void write_dotted(char (&text)[16], std::uint32_t address);

} // namespace net
