#pragma once
/// STRING:
///
///     04 len bytes      the text's bytes without a terminator; an absent text is written as an empty one
///
/// `max` is the largest number of bytes that the field may hold.
#include "protocol/stream.h"

/// Hands out the text with a zero byte added; the caller frees it with `free`. Nothing is allocated before
/// the length is known to be within `max`, and nothing is handed out on failure. `tag` is the identifier when
/// the caller has read it already, else 0.
const char* read_string(Stream* stream, std::uint32_t max, char** text, std::uint32_t tag);
/// A text longer than `max` fails with its identifier octet already sent. `text` may be null.
const char* write_string(Stream* stream, std::uint32_t max, const char* text);
