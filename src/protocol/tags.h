#pragma once
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
#include "protocol/at_hand.h"

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
/// Reads an identifier into `*tag` only when that is 0. The readers of one element begin with this: their
/// caller may have read the identifier already, to decide what follows.
inline const char* read_tag_if_needed(Stream* stream, std::uint32_t* tag) {
    return *tag == 0 ? read_tag(stream, tag) : nullptr;
}
/// Writes the shortest form.
const char* write_tag(Stream* stream, std::uint32_t tag);
