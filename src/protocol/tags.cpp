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

std::uint8_t* put_long_tag(std::uint8_t* octets, std::uint32_t tag) {
    const std::uint32_t number = tag >> 3;
    *octets++ = static_cast<std::uint8_t>((tag & 7) << 5 | long_form);
    int shift = 28; // 29 bits are at most five groups
    while (shift > 0 && number >> shift == 0)
        shift -= 7;
    for (; shift > 0; shift -= 7)
        *octets++ = static_cast<std::uint8_t>(0x80 | (number >> shift & 0x7F));
    *octets++ = number & 0x7F;
    return octets;
}

} // namespace

const char* read_tag(Stream* stream, std::uint32_t* tag) {
    std::uint8_t first = filler;
    while (first == filler) {
        if (const char* problem = stream->read(stream, &first, 1))
            return problem;
    }
    std::uint32_t number = first & long_form;
    if (number == long_form) {
        if (const char* problem = read_long_number(stream, &number))
            return problem;
    }
    *tag = number * 8 + (first >> 5);
    return nullptr;
}

std::uint8_t* put_tag(std::uint8_t* octets, std::uint32_t tag) {
    if (tag >= first_long_tag)
        return put_long_tag(octets, tag);
    *octets = static_cast<std::uint8_t>((tag & 7) << 5 | tag >> 3);
    return octets + 1;
}

const char* write_tag(Stream* stream, std::uint32_t tag) {
    std::uint8_t octets[longest_tag];
    const std::uint8_t* end = put_tag(octets, tag);
    return stream->socket_write_buf(stream, octets, static_cast<std::size_t>(end - octets));
}
