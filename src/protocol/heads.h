#pragma once
/// The head of every element: its identifier and its length.
///
/// Identifier octets, which begin every element:
///
///     7 6   5   4 3 2 1 0
///     class con number          number 0 to 30
///     class con 1 1 1 1 1       number 31 and above: it follows in base 128, most significant group first,
///                               bit 7 set in every octet but the last
///
/// `class` is 00 universal, 01 application, 10 context; `con` is 1 for an element that holds elements.
/// Inside the program a tag is one unsigned number: number * 8 + the top three bits of the first octet.
/// A number too large for 32 bits loses its high bits, silently.
///
///     19    filler: one octet without a length, dropped wherever an identifier is read. Only this short form
///           is a filler; the same number in the long form is an ordinary tag.
///
/// Length octets, which follow every identifier but a filler's:
///
///     00 .. 7F       the length itself
///     80             indefinite: elements follow, up to an end of contents (00 00)
///     81 .. 84       that many octets (low bits) follow and are the length, most significant first
///     85 .. FF       refused
#include "protocol/stream.h"

inline constexpr std::uint32_t end_of_contents = 0; // 00
inline constexpr std::uint32_t BE_BOOLEAN = 8;      // 01
inline constexpr std::uint32_t BE_INTEGER = 16;     // 02
inline constexpr std::uint32_t BE_STRING = 32;      // 04

inline constexpr std::uint8_t filler = 0x19;

/// The only octet of the identifier of a tag whose number is below 31, and back.
constexpr std::uint8_t short_identifier(std::uint32_t tag) {
    return static_cast<std::uint8_t>((tag & 7) << 5 | tag >> 3);
}
constexpr std::uint32_t short_tag(std::uint8_t identifier) {
    return (identifier & 0x1FU) * 8 + (identifier >> 5);
}
constexpr bool is_short(std::uint8_t identifier) { return (identifier & 0x1F) != 0x1F; }

const char* read_tag_by_octets(Stream* stream, std::uint32_t* tag);
/// Reads an identifier after any number of fillers.
inline const char* read_tag(Stream* stream, std::uint32_t* tag) {
    if (at_hand(stream) == 0 || !is_short(*stream->next) || *stream->next == filler)
        return read_tag_by_octets(stream, tag);
    *tag = short_tag(*stream->next++);
    return nullptr;
}
/// Reads an identifier into `*tag` only if that is 0. The readers of an element begin with this, because
/// their caller may have read the identifier already to decide which element follows.
inline const char* read_tag_if_needed(Stream* stream, std::uint32_t* tag) {
    return *tag == 0 ? read_tag(stream, tag) : nullptr;
}
/// Writes the shortest form.
const char* write_tag(Stream* stream, std::uint32_t tag);

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

struct Head {
    std::uint32_t length = 0;
    bool indefinite = false;
};

/// Reads the head of an element that must have the tag `expected`, a number below 31; else the text is
/// `wrong_tag`. `tag` is the identifier when the caller has read it already, else 0.
const char* read_head(Stream* stream, std::uint32_t tag, std::uint32_t expected, const char* wrong_tag,
                      Head* head);
