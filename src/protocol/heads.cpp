#include "protocol/heads.h"

namespace {

constexpr std::uint8_t long_tag = 0x1F;
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
    std::uint8_t octets[6] = {static_cast<std::uint8_t>((tag & 7) << 5 | long_tag)};
    std::size_t size = 1;
    int shift = 28; // 29 bits are at most five groups
    while (shift > 0 && number >> shift == 0)
        shift -= 7;
    for (; shift > 0; shift -= 7)
        octets[size++] = static_cast<std::uint8_t>(0x80 | (number >> shift & 0x7F));
    octets[size++] = number & 0x7F;
    return write_octets(stream, octets, size);
}

constexpr std::uint8_t long_length = 0x80;

const char* read_long_length(Stream* stream, std::size_t count, std::uint32_t* length) {
    std::uint8_t octets[4];
    if (count > sizeof octets)
        return "data out of range in read_length";
    if (const char* problem = read_octets(stream, octets, count))
        return problem;
    for (std::size_t i = 0; i < count; ++i)
        *length = *length << 8 | octets[i];
    return nullptr;
}

const char* write_long_length(Stream* stream, std::uint32_t length) {
    unsigned count = 1;
    while (count < 4 && length >> (8 * count) != 0)
        ++count;
    std::uint8_t octets[5] = {static_cast<std::uint8_t>(long_length + count)};
    for (unsigned i = 0; i < count; ++i)
        octets[1 + i] = static_cast<std::uint8_t>(length >> (8 * (count - 1 - i)));
    return write_octets(stream, octets, 1 + count);
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

const char* read_length_by_octets(Stream* stream, std::uint32_t* length, bool* indefinite) {
    std::uint8_t first = 0;
    if (const char* problem = read_octet(stream, &first))
        return problem;
    *indefinite = first == indefinite_length;
    *length = first;
    if (first < long_length)
        return nullptr;
    *length = 0;
    return *indefinite ? nullptr : read_long_length(stream, first & 0x7F, length);
}

const char* write_length(Stream* stream, std::uint32_t length) {
    if (length >= long_length)
        return write_long_length(stream, length);
    const auto octet = static_cast<std::uint8_t>(length);
    return write_octets(stream, &octet, 1);
}

const char* write_indefinite(Stream* stream) { return write_octets(stream, &indefinite_length, 1); }

const char* write_end_of_contents(Stream* stream) {
    const std::uint8_t octets[] = {0x00, 0x00};
    return write_octets(stream, octets, sizeof octets);
}

const char* read_head(Stream* stream, std::uint32_t tag, std::uint32_t expected, const char* wrong_tag,
                      Head* head) {
    if (const char* problem = read_tag_if_needed(stream, &tag))
        return problem;
    if (tag != expected)
        return wrong_tag;
    return read_length(stream, &head->length, &head->indefinite);
}
