#include "ctl/io/sha256.h"

#include <sha256.h>

#include <cstdint>

namespace ctl {

std::string sha256(std::string_view octets) {
    SHA256_CTX state;
    SHA256Init(&state);
    SHA256Update(&state, reinterpret_cast<const std::uint8_t*>(octets.data()), octets.size());
    std::uint8_t digest[SHA256_DIGEST_LENGTH];
    SHA256Final(digest, &state);
    return hex_of({reinterpret_cast<const char*>(digest), sizeof digest});
}

} // namespace ctl
