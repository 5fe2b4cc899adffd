#include "protocol/negotiation.h"

#include "error/messages.h"
#include "net/dotted.h"
#include "net/memory.h"

#include <cstring>
#include <string>

namespace {

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
    if (const char* problem = stream_open(&stream, address, port, connect_nonblocking))
        return problem;
    if (stream == nullptr)
        return format_error("Couldn't open connection to server \"%s\"", host);
    const char* problem = negotiate_as(stream, name, domain, used_name, status);
    stream->close(stream);
    return problem;
}
