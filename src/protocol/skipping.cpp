#include "protocol/skipping.h"

#include "protocol/lengths.h"
#include "protocol/tags.h"

#include <algorithm>

namespace {

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

// Behind an identifier: goes into an indefinite element, drops the contents of a definite one.
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

// Behind the identifier of an end of contents, whose length can only be 0.
const char* read_end(Stream* stream, const char* not_terminated) {
    std::uint32_t length = 0;
    bool indefinite = false;
    if (const char* problem = read_length(stream, &length, &indefinite))
        return problem;
    return indefinite || length != 0 ? not_terminated : nullptr;
}

const char* leave(Stream* stream, std::uint64_t* depth) {
    --*depth;
    // Deliberate: the message names another reader.
    return read_end(stream, "List not terminated correctly in read_devnode_list");
}

} // namespace

const char* skip_value(Stream* stream, std::uint32_t tag) {
    if (const char* problem = read_tag_if_needed(stream, &tag))
        return problem;
    if (tag == end_of_contents)
        return "skip_value encountered end of list";
    std::uint64_t depth = 0; // a peer can send for years without bringing 64 bits round
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
