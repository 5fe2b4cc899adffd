#pragma once
/// What an element begins with: identifier and length.
#include "protocol/lengths.h"
#include "protocol/tags.h"

struct Head {
    std::uint32_t length = 0;
    bool indefinite = false;
};

/// Reads the head of an element that must have the tag `expected`, a number below 31; else the text is
/// `wrong_tag`. `tag` is the identifier when the caller has read it already, else 0.
const char* read_head_by_parts(Stream* stream, std::uint32_t tag, std::uint32_t expected,
                               const char* wrong_tag, Head* head);
/// The same, with one look at the octets where a head of two octets is at hand, as nearly every one is.
inline const char* read_head(Stream* stream, std::uint32_t tag, std::uint32_t expected, const char* wrong_tag,
                             Head* head) {
    if (tag != 0 || at_hand(stream) < 2 || stream->next[0] != short_identifier(expected) ||
        stream->next[1] >= indefinite_length)
        return read_head_by_parts(stream, tag, expected, wrong_tag, head);
    head->length = stream->next[1];
    stream->next += 2;
    return nullptr;
}
