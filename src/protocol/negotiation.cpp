#include "protocol/negotiation.h"

#include "base/messages.h"
#include "net/address_text.h"
#include "net/memory.h"
#include "protocol/heads.h"
#include "protocol/messages.h"
#include "protocol/values.h"

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr std::int32_t our_version = 514;
constexpr char wrong_version[] =
    "Tavrin Server does not support our protocol version. Upgrade the Tavrin Server, or downgrade "
    "the Tavrin Agent.";

/// The high octet is the protocol; servers may count their releases in the low one.
bool compatible(std::int32_t version) { return (version >> 8 & 0xFF) == (our_version >> 8 & 0xFF); }

const char* read_offer(Stream* stream, std::int32_t* version) {
    if (const char* problem = read_server_offers_incomplete(stream, version, tag_server_offers))
        return problem;
    std::uint32_t tag = 0;
    if (const char* problem = read_tag(stream, &tag))
        return problem;
    if (tag != tag_server_private_key)
        return "Tavrin Server does not support private key authentication.  Upgrade the Tavrin Server.";
    if (const char* problem = read_server_private_key(stream, tag))
        return problem;
    return skip_to_eol(stream);
}

/// If a text is too long, what precedes it is sent all the same, and the connection ends within an element.
const char* send_request(Stream* stream, const char* name, const char* domain) {
    Composition request;
    const char* refused = write_client_wants(request.stream(), our_version, name, domain);
    const char* problem = request.send_over(stream);
    return problem != nullptr ? problem : refused;
}

const char* send_closing(Stream* stream) {
    Composition closing;
    write_closing(closing.stream()); // there is room for it
    return closing.send_over(stream);
}

const char* take_offer(Stream* stream, int* status) {
    std::int32_t version = 0;
    if (const char* problem = read_offer(stream, &version))
        return problem;
    if (!compatible(version))
        return wrong_version;
    if (const char* problem = send_closing(stream))
        return problem;
    if (const char* problem = stream->socket_flush(stream))
        return problem;
    *status = negotiation_accepted;
    return nullptr;
}

const char* take_rejection(Stream* stream, int* status) {
    char* reason = nullptr;
    if (const char* problem = read_negotiate_nack(stream, &reason, tag_negotiate_nack))
        return problem;
    *status = negotiation_rejected;
    const char* rejection = format_error("Tavrin Server rejected us: %s", reason);
    std::free(reason);
    return rejection;
}

std::string local_address(Stream* stream) {
    std::uint32_t address = 0;
    if (!socket_local_address(stream->socket, &address, nullptr))
        return "";
    char text[16];
    net::write_dotted(text, address);
    return text;
}

bool given(const char* text) { return text != nullptr && *text != '\0'; }

char* copy_of(const std::string& text) {
    auto* copy = static_cast<char*>(net::resize_memory(nullptr, text.size() + 1));
    if (copy != nullptr)
        std::memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

const char* negotiate_as(Stream* stream, const char* name, const char* domain, char** used_name,
                         int* status) {
    if (given(name))
        return negotiate(stream, name, domain, status);
    const std::string address = local_address(stream);
    if (used_name != nullptr)
        *used_name = copy_of(address);
    return negotiate(stream, address.c_str(), domain, status);
}

} // namespace

const char* negotiate(Stream* stream, const char* name, const char* domain, int* status) {
    int unwanted = negotiation_failed;
    if (status == nullptr)
        status = &unwanted;
    *status = negotiation_failed;
    if (const char* problem = send_request(stream, name, domain))
        return problem;
    std::uint32_t tag = 0;
    if (const char* problem = read_tag(stream, &tag))
        return problem;
    if (tag == tag_server_offers)
        return take_offer(stream, status);
    if (tag == tag_negotiate_nack)
        return take_rejection(stream, status);
    return "Tavrin Server using incompatible protocol";
}

const char* connect_and_negotiate(const char* host, std::uint16_t port, const char* name, const char* domain,
                                  char** used_name, int* status) {
    if (status != nullptr)
        *status = negotiation_failed;
    if (used_name != nullptr)
        *used_name = nullptr;
    std::uint32_t address = 0;
    if (const char* problem = resolve_host(host, &address))
        return problem;
    Stream* stream = nullptr;
    if (const char* problem = stream_open(&stream, address, port, net::connect_nonblocking))
        return problem;
    // stream_open sets the stream whenever it succeeds; this check is for an implementation that does not.
    if (stream == nullptr)
        return format_error("Couldn't open connection to server \"%s\"", host);
    const char* problem = negotiate_as(stream, name, domain, used_name, status);
    stream->close(stream);
    return problem;
}
