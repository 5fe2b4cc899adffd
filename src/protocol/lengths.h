#pragma once
/// Length octets, which follow every identifier but a filler's:
///
///     00 .. 7F       the length itself
///     80             indefinite: elements follow, up to an end of contents (00 00)
///     81 .. 84       that many octets (low bits) follow and are the length, most significant first
///     85 .. FF       refused
#include "protocol/at_hand.h"

inline constexpr std::uint8_t indefinite_length = 0x80;

const char* read_length_by_octets(Stream* stream, std::uint32_t* length, bool* indefinite);
/// Lengths are counts of octets.
inline const char* read_length(Stream* stream, std::uint32_t* length, bool* indefinite) {
    if (at_hand(stream) == 0 || *stream->next > indefinite_length)
        return read_length_by_octets(stream, length, indefinite);
    *indefinite = *stream->next == indefinite_length;
    *length = *stream->next++ & 0x7FU;
    return nullptr;
}
/// Writes the shortest form.
const char* write_length(Stream* stream, std::uint32_t length);
const char* write_indefinite(Stream* stream);
const char* write_end_of_contents(Stream* stream);
