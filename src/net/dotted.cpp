#include "net/dotted.h"

#include <cstdio>
#include <cstring>

void net::write_dotted(char (&text)[16], std::uint32_t address) {
    // In memory the octets lie in the order in which they are written.
    unsigned char octet[4];
    std::memcpy(octet, &address, sizeof octet);
    std::snprintf(text, sizeof text, "%d.%d.%d.%d", octet[0], octet[1], octet[2], octet[3]);
}
