#include "protocol/messages.h"

#include "error/messages.h"
#include "protocol/lengths.h"
#include "protocol/numbers.h"
#include "protocol/strings.h"
#include "protocol/tags.h"

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
