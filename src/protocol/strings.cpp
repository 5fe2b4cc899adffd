#include "protocol/strings.h"

#include "net/memory.h"
#include "protocol/heads.h"

#include <cstring>

namespace {

constexpr std::uint8_t string_octet = 0x04;

const char* read_text(Stream* stream, std::size_t length, char** text) {
    auto* content = static_cast<char*>(net::resize_memory(nullptr, length + 1));
    if (content == nullptr)
        return "Unable to allocate data in read_string";
    if (const char* problem = read_octets(stream, content, length)) {
        std::free(content);
        return problem;
    }
    content[length] = '\0';
    *text = content;
    return nullptr;
}

} // namespace

const char* read_string(Stream* stream, std::uint32_t max, char** text, std::uint32_t tag) {
    Head head;
    *text = nullptr;
    if (const char* problem = read_head(stream, tag, BE_STRING, "Wrong tag, expected BE_STRING", &head))
        return problem;
    if (head.indefinite || head.length > max)
        return "data out of range in read_string";
    return read_text(stream, head.length, text);
}

const char* write_string(Stream* stream, std::uint32_t max, const char* text) {
    const std::size_t length = text != nullptr ? std::strlen(text) : 0;
    if (const char* problem = write_octets(stream, &string_octet, 1))
        return problem;
    if (length > max)
        return "data out of range in write_string";
    if (const char* problem = write_length(stream, static_cast<std::uint32_t>(length)))
        return problem;
    return length > 0 ? write_octets(stream, text, length) : nullptr;
}
