#include "protocol/numbers.h"

#include "protocol/heads.h"

namespace {

bool fits(std::int32_t value, unsigned bits) {
    const std::int32_t limit = std::int32_t{1} << (bits - 1);
    return -limit <= value && value < limit;
}

unsigned content_octets(std::int32_t value) {
    if (value == 0)
        return 0;
    unsigned count = 1;
    while (count < 4 && !fits(value, 8 * count))
        ++count;
    return count;
}

std::int32_t from_octets(const std::uint8_t* octets, std::size_t count) {
    std::uint32_t value = count > 0 && (octets[0] & 0x80) != 0 ? ~std::uint32_t{0} : 0;
    for (std::size_t i = 0; i < count; ++i)
        value = value << 8 | octets[i];
    return static_cast<std::int32_t>(value);
}

} // namespace

const char* read_signed_int(Stream* stream, std::int32_t min, std::int32_t max, std::int32_t* value,
                            std::uint32_t tag) {
    static constexpr char out_of_range[] = "data out of range in read_signed_int";
    std::uint8_t octets[4];
    Head head;
    if (const char* problem = read_head(stream, tag, BE_INTEGER, "Wrong tag, expected BE_INTEGER", &head))
        return problem;
    if (head.indefinite || head.length > sizeof octets)
        return out_of_range;
    if (const char* problem = read_octets(stream, octets, head.length))
        return problem;
    const std::int32_t received = from_octets(octets, head.length);
    if (received < min || received > max)
        return out_of_range;
    *value = received;
    return nullptr;
}

const char* write_signed_int(Stream* stream, std::int32_t min, std::int32_t max, std::int32_t value) {
    if (value < min || value > max)
        return "data out of range in write_signed_int";
    const unsigned count = content_octets(value);
    std::uint8_t octets[6] = {0x02, static_cast<std::uint8_t>(count)};
    for (unsigned i = 0; i < count; ++i)
        octets[2 + i] = static_cast<std::uint8_t>(static_cast<std::uint32_t>(value) >> (8 * (count - 1 - i)));
    return write_octets(stream, octets, 2 + count);
}

const char* read_bool(Stream* stream, bool* value, std::uint32_t tag) {
    std::uint8_t content = 0;
    Head head;
    if (const char* problem = read_head(stream, tag, BE_BOOLEAN, "Wrong tag, expected BE_BOOLEAN", &head))
        return problem;
    if (head.indefinite || head.length != 1)
        return "data out of range in read_bool";
    if (const char* problem = read_octet(stream, &content))
        return problem;
    *value = content != 0;
    return nullptr;
}

const char* write_bool(Stream* stream, bool value) {
    const std::uint8_t octets[] = {0x01, 0x01, static_cast<std::uint8_t>(value ? 0x01 : 0x00)};
    return write_octets(stream, octets, sizeof octets);
}
