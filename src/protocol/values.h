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

/// `max` is the largest number of bytes that the field may hold. Hands out the text with a zero byte added;
/// the caller frees it with `free`. Nothing is allocated before the length is known to be within `max`, and
/// nothing is handed out on failure.
const char* read_string(Stream* stream, std::uint32_t max, char** text, std::uint32_t tag);
/// A text longer than `max` fails with its identifier octet already sent. `text` may be null.
const char* write_string(Stream* stream, std::uint32_t max, const char* text);

/// Reads one whole element and drops it, whatever it holds. A peer may nest elements without end: that costs
/// neither stack nor memory, only the time to read them.
const char* skip_value(Stream* stream, std::uint32_t tag);

/// Drops all further elements of an indefinite element, its end of contents included. Readers of such
/// elements end with this, so that a peer may append fields which this program does not know.
const char* skip_to_eol(Stream* stream);
