#pragma once
/// Length octets, which follow every identifier but a filler's:
///
///     00 .. 7F       the length itself
///     80             indefinite: elements follow, up to an end of contents (00 00)
///     81 .. 84       that many octets (low bits) follow and are the length, most significant first
///     85 .. FF       refused
#include "protocol/stream.h"

/// Lengths are counts of octets.
const char* read_length(Stream* stream, std::uint32_t* length, bool* indefinite);
/// Writes the shortest form.
const char* write_length(Stream* stream, std::uint32_t length);
const char* write_indefinite(Stream* stream);
const char* write_end_of_contents(Stream* stream);

inline constexpr std::uint8_t indefinite_length = 0x80;

inline constexpr std::size_t longest_length = 5;
/// Puts the shortest form at `octets` and returns the place behind it; at most `longest_length` octets.
std::uint8_t* put_length(std::uint8_t* octets, std::uint32_t length);
