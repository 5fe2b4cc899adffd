#include "protocol/lengths.h"

namespace {

constexpr std::uint8_t long_form = 0x80;

const char* read_long_length(Stream* stream, std::size_t count, std::uint32_t* length) {
    std::uint8_t octets[4];
    if (count > sizeof octets)
        return "data out of range in read_length";
    if (const char* problem = stream->read(stream, octets, count))
        return problem;
    for (std::size_t i = 0; i < count; ++i)
        *length = *length << 8 | octets[i];
    return nullptr;
}

} // namespace

const char* read_length(Stream* stream, std::uint32_t* length, bool* indefinite) {
    std::uint8_t first = 0;
    if (const char* problem = stream->read(stream, &first, 1))
        return problem;
    *indefinite = first == indefinite_length;
    *length = first;
    if (first < long_form)
        return nullptr;
    *length = 0;
    return *indefinite ? nullptr : read_long_length(stream, first & 0x7F, length);
}

std::uint8_t* put_length(std::uint8_t* octets, std::uint32_t length) {
    if (length < long_form) {
        *octets = static_cast<std::uint8_t>(length);
        return octets + 1;
    }
    int count = 1;
    while (count < 4 && length >> (8 * count) != 0)
        ++count;
    *octets++ = static_cast<std::uint8_t>(long_form + count);
    while (count-- > 0)
        *octets++ = static_cast<std::uint8_t>(length >> (8 * count));
    return octets;
}

const char* write_length(Stream* stream, std::uint32_t length) {
    std::uint8_t octets[longest_length];
    const std::uint8_t* end = put_length(octets, length);
    return stream->socket_write_buf(stream, octets, static_cast<std::size_t>(end - octets));
}

const char* write_indefinite(Stream* stream) {
    return stream->socket_write_buf(stream, &indefinite_length, 1);
}

const char* write_end_of_contents(Stream* stream) {
    const std::uint8_t octets[] = {0x00, 0x00};
    return stream->socket_write_buf(stream, octets, sizeof octets);
}
