#pragma once
/// The values that elements hold:
///
///     02 len content    INTEGER: two's complement, most significant octet first, 0 to 4 octets. Written in
///                       the fewest octets that hold the value; 0 has no content at all.
///                       02 00 = 0    02 01 FF = -1    02 02 00 80 = 128    02 02 02 02 = 514
///     01 01 content     BOOLEAN: 00 is false. True is written as 01; any other octet but 00 is read as true.
///     04 len bytes      STRING: the text's bytes without a terminator. An absent text is written as an empty
///                       one.
///
/// The readers' `tag` is the identifier when the caller has read it already, else 0.
#include "protocol/stream.h"

/// Fails for a value outside `min` to `max`.
const char* read_signed_int(Stream* stream, std::int32_t min, std::int32_t max, std::int32_t* value,
                            std::uint32_t tag);
/// Fails for a value outside `min` to `max`, before anything is written.
const char* write_signed_int(Stream* stream, std::int32_t min, std::int32_t max, std::int32_t value);

const char* read_bool(Stream* stream, bool* value, std::uint32_t tag);
const char* write_bool(Stream* stream, bool value);

/// Reads a text of at most `max` bytes and adds a zero byte; the caller frees it with `free`. Allocates only
/// after the length is known to be within `max`. `*text` is null on failure.
const char* read_string(Stream* stream, std::uint32_t max, char** text, std::uint32_t tag);
/// Fails for a text longer than `max`, after its identifier octet was written. `text` may be null.
const char* write_string(Stream* stream, std::uint32_t max, const char* text);

/// Reads one whole element and drops it. Nested elements use neither stack nor memory, because a peer may
/// send any number of them.
const char* skip_value(Stream* stream, std::uint32_t tag);

/// Drops the remaining elements of an indefinite element and its end of contents. Readers of such elements
/// call this last, so that a peer may append fields that this program does not know.
const char* skip_to_eol(Stream* stream);
