#include "protocol/values.h"

#include "net/memory.h"
#include "protocol/heads.h"

#include <algorithm>
#include <cstring>

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

const char* discard(Stream* stream, std::uint32_t count) {
    std::uint8_t piece[128];
    while (count > 0) {
        const std::uint32_t size = std::min<std::uint32_t>(count, sizeof piece);
        if (const char* problem = read_octets(stream, piece, size))
            return problem;
        count -= size;
    }
    return nullptr;
}

/// After an identifier: enters an indefinite element, or drops the contents of a definite one.
const char* enter_or_discard(Stream* stream, std::uint64_t* depth) {
    std::uint32_t length = 0;
    bool indefinite = false;
    if (const char* problem = read_length(stream, &length, &indefinite))
        return problem;
    if (!indefinite)
        return discard(stream, length);
    ++*depth;
    return nullptr;
}

/// After the identifier of an end of contents, whose length must be 0.
const char* read_end(Stream* stream, const char* not_terminated) {
    std::uint32_t length = 0;
    bool indefinite = false;
    if (const char* problem = read_length(stream, &length, &indefinite))
        return problem;
    return indefinite || length != 0 ? not_terminated : nullptr;
}

const char* leave(Stream* stream, std::uint64_t* depth) {
    --*depth;
    // That the message names another reader is deliberate: administrators' scripts know it.
    return read_end(stream, "List not terminated correctly in read_devnode_list");
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

const char* skip_value(Stream* stream, std::uint32_t tag) {
    if (const char* problem = read_tag_if_needed(stream, &tag))
        return problem;
    if (tag == end_of_contents)
        return "skip_value encountered end of list";
    std::uint64_t depth = 0; // a peer would have to send for years to overflow 64 bits
    const char* problem = enter_or_discard(stream, &depth);
    while (problem == nullptr && depth > 0) {
        problem = read_tag(stream, &tag);
        if (problem == nullptr)
            problem = tag == end_of_contents ? leave(stream, &depth) : enter_or_discard(stream, &depth);
    }
    return problem;
}

const char* skip_to_eol(Stream* stream) {
    for (;;) {
        std::uint32_t tag = 0;
        if (const char* problem = read_tag(stream, &tag))
            return problem;
        if (tag == end_of_contents)
            return read_end(stream, "List not terminated correctly in skip_to_eol");
        if (const char* problem = skip_value(stream, tag))
            return problem;
    }
}
