#include "protocol/tags.h"

namespace {

constexpr std::uint8_t long_form = 0x1F;
constexpr std::uint32_t first_long_tag = 31 * 8;

const char* read_long_number(Stream* stream, std::uint32_t* number) {
    std::uint8_t octet = 0;
    *number = 0;
    do {
        if (const char* problem = read_octet(stream, &octet))
            return problem;
        *number = (*number << 7) | (octet & 0x7F);
    } while ((octet & 0x80) != 0);
    return nullptr;
}

const char* write_long_tag(Stream* stream, std::uint32_t tag) {
    const std::uint32_t number = tag >> 3;
    std::uint8_t octets[6] = {static_cast<std::uint8_t>((tag & 7) << 5 | long_form)};
    std::size_t size = 1;
    int shift = 28; // 29 bits are at most five groups
    while (shift > 0 && number >> shift == 0)
        shift -= 7;
    for (; shift > 0; shift -= 7)
        octets[size++] = static_cast<std::uint8_t>(0x80 | (number >> shift & 0x7F));
    octets[size++] = number & 0x7F;
    return write_octets(stream, octets, size);
}

} // namespace

const char* read_tag_by_octets(Stream* stream, std::uint32_t* tag) {
    std::uint8_t first = filler;
    while (first == filler) {
        if (const char* problem = read_octet(stream, &first))
            return problem;
    }
    if (is_short(first)) {
        *tag = short_tag(first);
        return nullptr;
    }
    std::uint32_t number = 0;
    if (const char* problem = read_long_number(stream, &number))
        return problem;
    *tag = number * 8 + (first >> 5);
    return nullptr;
}

const char* write_tag(Stream* stream, std::uint32_t tag) {
    if (tag >= first_long_tag)
        return write_long_tag(stream, tag);
    const std::uint8_t octet = short_identifier(tag);
    return write_octets(stream, &octet, 1);
}
