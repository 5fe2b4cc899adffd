#include "protocol/messages.h"

#include "error/messages.h"
#include "protocol/lengths.h"
#include "protocol/numbers.h"
#include "protocol/skipping.h"
#include "protocol/strings.h"
#include "protocol/tags.h"

#include <cstdlib>

namespace {

constexpr std::uint32_t longest_reason = 1024;

// What every message begins with: its own identifier and the indefinite length.
const char* read_head(Stream* stream, std::uint32_t tag, std::uint32_t expected, const char* wrong_tag,
                      const char* definite) {
    std::uint32_t length = 0;
    bool indefinite = false;
    if (const char* problem = read_tag_if_needed(stream, &tag))
        return problem;
    if (tag != expected)
        return format_error(wrong_tag, static_cast<int>(tag));
    if (const char* problem = read_length(stream, &length, &indefinite))
        return problem;
    return indefinite ? nullptr : definite;
}

} // namespace

const char* read_server_offers_incomplete(Stream* stream, std::int32_t* version, std::uint32_t tag) {
    if (const char* problem = read_head(stream, tag, tag_server_offers,
                                        "Wrong tag (%d) encountered in read_server_offers_incomplete",
                                        "Definite length read in read_server_offers_incomplete"))
        return problem;
    if (const char* problem = read_signed_int(stream, 0, 65535, version, 0))
        return format_error("server_offers.version: %s", problem);
    return nullptr;
}

const char* read_server_private_key(Stream* stream, std::uint32_t tag) {
    bool ignored = false;
    if (const char* problem = read_head(stream, tag, tag_server_private_key,
                                        "Wrong tag (%d) encountered in read_server_private_key",
                                        "Definite length read in read_server_private_key"))
        return problem;
    if (const char* problem = read_bool(stream, &ignored, 0))
        return format_error("server_private_key.hasMasterKey: %s", problem);
    if (const char* problem = read_bool(stream, &ignored, 0))
        return format_error("server_private_key.hasHallmark: %s", problem);
    return skip_to_eol(stream);
}

const char* read_negotiate_nack(Stream* stream, char** reason, std::uint32_t tag) {
    *reason = nullptr;
    if (const char* problem =
            read_head(stream, tag, tag_negotiate_nack, "Wrong tag (%d) encountered in read_negotiate_nack",
                      "Definite length read in read_negotiate_nack"))
        return problem;
    if (const char* problem = read_string(stream, longest_reason, reason, 0))
        return format_error("negotiate_nack.reason: %s", problem);
    if (const char* problem = skip_to_eol(stream)) {
        std::free(*reason);
        *reason = nullptr;
        return problem;
    }
    return nullptr;
}
