#include "protocol/messages.h"

#include "base/messages.h"
#include "protocol/heads.h"
#include "protocol/values.h"

#include <cstdlib>

namespace {

constexpr std::uint32_t longest_name = 256;
constexpr std::uint32_t longest_domain = 1024;
constexpr std::uint32_t longest_id = 128;

const char* open_element(Stream* stream, std::uint32_t tag) {
    const char* problem = write_tag(stream, tag);
    return problem != nullptr ? problem : write_indefinite(stream);
}

const char* write_identity(Stream* stream, const char* name, const char* domain) {
    if (const char* problem = write_string(stream, longest_name, name))
        return format_error("client_private_key.name: %s", problem);
    if (const char* problem = write_string(stream, longest_domain, domain))
        return format_error("client_private_key.domain: %s", problem);
    if (const char* problem = write_string(stream, longest_id, nullptr))
        return format_error("client_private_key.id: %s", problem);
    return nullptr;
}

const char* write_abilities(Stream* stream) {
    if (const char* problem = write_bool(stream, true))
        return format_error("client_private_key.hasMasterKey: %s", problem);
    if (const char* problem = write_bool(stream, true))
        return format_error("client_private_key.hasHallmark: %s", problem);
    if (const char* problem = write_bool(stream, true))
        return format_error("client_private_key.testing: %s", problem);
    return nullptr;
}

const char* write_client_private_key(Stream* stream, const char* name, const char* domain) {
    if (const char* problem = open_element(stream, tag_client_private_key))
        return problem;
    if (const char* problem = write_identity(stream, name, domain))
        return problem;
    if (const char* problem = write_abilities(stream))
        return problem;
    return write_end_of_contents(stream);
}

constexpr std::uint32_t longest_reason = 1024;

/// The start of every message: its identifier and the indefinite length.
const char* enter_message(Stream* stream, std::uint32_t tag, std::uint32_t expected, const char* wrong_tag,
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

const char* refuse(Stream*, const void*, std::size_t) { return "Message is longer than any message"; }

} // namespace

const char* write_client_wants(Stream* stream, std::int32_t version, const char* name, const char* domain) {
    if (const char* problem = open_element(stream, tag_client_wants))
        return problem;
    if (const char* problem = write_signed_int(stream, 0, 65535, version))
        return format_error("client_wants.version: %s", problem);
    if (const char* problem = write_client_private_key(stream, name, domain))
        return problem;
    return write_end_of_contents(stream);
}

const char* write_closing(Stream* stream) {
    const char* problem = open_element(stream, tag_closing);
    return problem != nullptr ? problem : write_end_of_contents(stream);
}

const char* read_server_offers_incomplete(Stream* stream, std::int32_t* version, std::uint32_t tag) {
    if (const char* problem = enter_message(stream, tag, tag_server_offers,
                                            "Wrong tag (%d) encountered in read_server_offers_incomplete",
                                            "Definite length read in read_server_offers_incomplete"))
        return problem;
    if (const char* problem = read_signed_int(stream, 0, 65535, version, 0))
        return format_error("server_offers.version: %s", problem);
    return nullptr;
}

const char* read_server_private_key(Stream* stream, std::uint32_t tag) {
    bool ignored = false;
    if (const char* problem = enter_message(stream, tag, tag_server_private_key,
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
    if (const char* problem = enter_message(stream, tag, tag_negotiate_nack,
                                            "Wrong tag (%d) encountered in read_negotiate_nack",
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

Composition::Composition() : stream_{.socket_write_buf = refuse} {
    stream_.room = octets_;
    stream_.room_end = octets_ + sizeof octets_;
}

const char* Composition::send_over(Stream* connection) const {
    return connection->socket_write_buf(connection, octets_,
                                        static_cast<std::size_t>(stream_.room - octets_));
}
