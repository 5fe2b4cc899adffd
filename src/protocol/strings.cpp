#include "protocol/strings.h"

#include "net/memory.h"
#include "protocol/lengths.h"
#include "protocol/tags.h"

#include <cstring>

namespace {

constexpr std::uint8_t string_octet = 0x04;

const char* read_text(Stream* stream, std::size_t length, char** text) {
    auto* content = static_cast<char*>(net::resize_memory(nullptr, length + 1));
    if (content == nullptr)
        return "Unable to allocate data in read_string";
    if (const char* problem = stream->read(stream, content, length)) {
        std::free(content);
        return problem;
    }
    content[length] = '\0';
    *text = content;
    return nullptr;
}

const char* refuse_text(Stream* stream) {
    const char* problem = stream->socket_write_buf(stream, &string_octet, 1);
    return problem != nullptr ? problem : "data out of range in write_string";
}

} // namespace

const char* read_string(Stream* stream, std::uint32_t max, char** text, std::uint32_t tag) {
    std::uint32_t length = 0;
    bool indefinite = false;
    *text = nullptr;
    if (const char* problem = read_tag_if_needed(stream, &tag))
        return problem;
    if (tag != BE_STRING)
        return "Wrong tag, expected BE_STRING";
    if (const char* problem = read_length(stream, &length, &indefinite))
        return problem;
    if (indefinite || length > max)
        return "data out of range in read_string";
    return read_text(stream, length, text);
}

const char* write_string(Stream* stream, std::uint32_t max, const char* text) {
    if (text == nullptr)
        text = "";
    const std::size_t length = std::strlen(text);
    if (length > max)
        return refuse_text(stream);
    std::uint8_t octets[128];
    octets[0] = string_octet;
    std::uint8_t* end = put_length(octets + 1, static_cast<std::uint32_t>(length));
    const auto head = static_cast<std::size_t>(end - octets);
    if (length <= sizeof octets - head) { // a short text goes with its head
        std::memcpy(end, text, length);
        return stream->socket_write_buf(stream, octets, head + length);
    }
    if (const char* problem = stream->socket_write_buf(stream, octets, head))
        return problem;
    return stream->socket_write_buf(stream, text, length);
}
