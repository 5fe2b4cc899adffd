#include "protocol/lengths.h"

namespace {

constexpr std::uint8_t long_form = 0x80;

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
    std::uint8_t octets[5] = {static_cast<std::uint8_t>(long_form + count)};
    for (unsigned i = 0; i < count; ++i)
        octets[1 + i] = static_cast<std::uint8_t>(length >> (8 * (count - 1 - i)));
    return write_octets(stream, octets, 1 + count);
}

} // namespace

const char* read_length_by_octets(Stream* stream, std::uint32_t* length, bool* indefinite) {
    std::uint8_t first = 0;
    if (const char* problem = read_octet(stream, &first))
        return problem;
    *indefinite = first == indefinite_length;
    *length = first;
    if (first < long_form)
        return nullptr;
    *length = 0;
    return *indefinite ? nullptr : read_long_length(stream, first & 0x7F, length);
}

const char* write_length(Stream* stream, std::uint32_t length) {
    if (length >= long_form)
        return write_long_length(stream, length);
    const auto octet = static_cast<std::uint8_t>(length);
    return write_octets(stream, &octet, 1);
}

const char* write_indefinite(Stream* stream) { return write_octets(stream, &indefinite_length, 1); }

const char* write_end_of_contents(Stream* stream) {
    const std::uint8_t octets[] = {0x00, 0x00};
    return write_octets(stream, octets, sizeof octets);
}
