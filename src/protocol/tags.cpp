#include "protocol/tags.h"

namespace {

constexpr std::uint8_t filler = 0x19;
constexpr std::uint8_t long_form = 0x1F;
constexpr std::uint32_t first_long_tag = 31 * 8;

const char* read_long_number(Stream* stream, std::uint32_t* number) {
    std::uint8_t octet = 0;
    *number = 0;
    do {
        if (const char* problem = stream->read(stream, &octet, 1))
            return problem;
        *number = (*number << 7) | (octet & 0x7F);
    } while ((octet & 0x80) != 0);
    return nullptr;
}

const char* write_long_tag(Stream* stream, std::uint32_t tag) {
    std::uint8_t octets[6]; // filled from the end: 29 bits of tag number are at most five groups
    std::uint8_t* first = octets + sizeof octets;
    std::uint32_t number = tag >> 3;
    *--first = number & 0x7F;
    while ((number >>= 7) != 0)
        *--first = static_cast<std::uint8_t>(0x80 | (number & 0x7F));
    *--first = static_cast<std::uint8_t>((tag & 7) << 5 | long_form);
    return stream->socket_write_buf(stream, first, static_cast<std::size_t>(octets + sizeof octets - first));
}

} // namespace

const char* read_tag(Stream* stream, std::uint32_t* tag) {
    std::uint8_t first = filler;
    while (first == filler)
        if (const char* problem = stream->read(stream, &first, 1))
            return problem;
    std::uint32_t number = first & long_form;
    if (number == long_form)
        if (const char* problem = read_long_number(stream, &number))
            return problem;
    *tag = number * 8 + (first >> 5);
    return nullptr;
}

const char* read_tag_if_needed(Stream* stream, std::uint32_t* tag) {
    return *tag == 0 ? read_tag(stream, tag) : nullptr;
}

const char* write_tag(Stream* stream, std::uint32_t tag) {
    if (tag >= first_long_tag)
        return write_long_tag(stream, tag);
    const auto octet = static_cast<std::uint8_t>((tag & 7) << 5 | tag >> 3);
    return stream->socket_write_buf(stream, &octet, 1);
}
